import QtQuick
import Quillmere

/// The white card without a title: everything on a screen lies on one.
Item {
    id: root

    property real radius: Theme.cardRadius
    property color color: Theme.card
    default property alias content: inner.data

    Elevation {
        anchors.fill: parent
        radius: root.radius
    }

    Rectangle {
        anchors.fill: parent
        radius: root.radius
        color: root.color
        border.width: 1
        border.color: Theme.cardBorder
    }

    Item {
        id: inner

        anchors.fill: parent
    }
}
