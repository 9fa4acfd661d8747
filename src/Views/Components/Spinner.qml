pragma ComponentBehavior: Bound

import QtQuick
import Quillmere

/// Eight dots that take turns, for work whose length nobody knows.
Item {
    id: root

    property bool running: true
    property color color: Theme.accent
    property int size: 16

    property int step: 0

    implicitWidth: size
    implicitHeight: size
    visible: running

    Timer {
        interval: 110
        repeat: true
        running: root.running && root.visible && !Theme.reducedMotion
        onTriggered: root.step = (root.step + 1) % 8
    }

    Repeater {
        model: 8

        Rectangle {
            required property int index
            readonly property real angle: index * Math.PI / 4

            x: root.size / 2 + Math.sin(angle) * (root.size - width) / 2 - width / 2
            y: root.size / 2 - Math.cos(angle) * (root.size - width) / 2 - height / 2
            width: root.size / 5.5
            height: width
            radius: width / 2
            color: Theme.tint(root.color, 1 - ((root.step - index + 8) % 8) * 0.11)
        }
    }
}
