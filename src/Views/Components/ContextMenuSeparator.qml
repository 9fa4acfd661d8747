import QtQuick
import QtQuick.Templates as T
import Quillmere

/// A line between two groups of a menu.
T.MenuSeparator {
    implicitWidth: 120
    implicitHeight: 9
    padding: 4

    contentItem: Divider {}
}
