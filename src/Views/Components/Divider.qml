import QtQuick
import Quillmere

/// A hairline between two rows or two parts of a sheet.
Rectangle {
    implicitHeight: 1
    height: 1
    color: Theme.divider
}
