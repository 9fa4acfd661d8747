import QtQuick
import Quillmere

/// What marks a row of a list: a ground of its own under the pointer, a ring for the keyboard. It lies behind what the
/// row shows, `margin` from the rows above and below.
Item {
    id: root

    property bool shown: false
    property bool ringed: false
    property color color: Theme.hover
    property real radius: Theme.rowRadius
    property real margin: 3

    x: 8
    y: margin
    width: parent.width - 2 * x
    height: parent.height - 2 * margin

    Rectangle {
        anchors.fill: parent
        visible: root.shown
        radius: root.radius
        color: root.color
    }

    FocusRing {
        shown: root.ringed
        gap: 0
        controlRadius: root.radius
    }
}
