import QtQuick
import Quillmere

/// The ground of a menu.
Item {
    Elevation {
        anchors.fill: parent
        level: Elevation.Floating
        radius: Theme.rowRadius
    }

    Rectangle {
        anchors.fill: parent
        radius: Theme.rowRadius
        color: Theme.raised
        border.width: 1
        border.color: Theme.cardBorder
    }
}
