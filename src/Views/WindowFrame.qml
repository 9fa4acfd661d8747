import QtQuick
import Quillmere

/// The edges of a window that has no frame of its own: a hairline around it, and the strips by which it is resized.
Item {
    id: root

    Rectangle {
        anchors.fill: parent
        visible: grips.isFree
        color: "transparent"
        border.width: 1
        border.color: Theme.sidebarHairline
    }

    WindowGrips {
        id: grips

        anchors.fill: parent
    }
}
