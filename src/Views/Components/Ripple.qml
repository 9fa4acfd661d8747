pragma ComponentBehavior: Bound

import QtQuick
import Quillmere

/// The program's sign of waiting, working and done: a drop with its rings. While `working` they spread and fade.
Item {
    id: root

    property string symbol
    property int symbolSize: Math.round(dropSize * 0.45)
    property int dropSize: 68
    property color color: Theme.accentFill
    property color ringColor: Theme.dark && Qt.colorEqual(color, Theme.accentFill) ? Theme.accent : color
    property bool working: false

    readonly property bool moving: working && visible && !Theme.reducedMotion

    implicitWidth: Math.ceil(dropSize * 2.25)
    implicitHeight: implicitWidth

    Accessible.ignored: true

    Repeater {
        model: 3

        Rectangle {
            id: ring

            required property int index
            property real phase: 0

            anchors.centerIn: parent
            width: root.dropSize * [2.2, 1.75, 1.33][index]
            height: width
            radius: width / 2
            scale: 1 + 0.15 * phase
            opacity: 1 - phase
            color: Theme.tint(root.ringColor, [0.035, 0.045, 0.06][index])
            border.width: 1
            border.color: Theme.tint(root.ringColor, [0.12, 0.18, 0.26][index])

            SequentialAnimation {
                running: root.moving

                onRunningChanged: {
                    if (!running)
                        ring.phase = 0;
                }

                PauseAnimation {
                    duration: (2 - ring.index) * Theme.rippleDuration / 3
                }

                NumberAnimation {
                    target: ring
                    property: "phase"
                    from: 0
                    to: 1
                    duration: Theme.rippleDuration
                    loops: Animation.Infinite
                    easing.type: Easing.OutCubic
                }
            }
        }
    }

    Rectangle {
        anchors.centerIn: parent
        width: root.dropSize
        height: width
        radius: width / 2
        color: root.color
    }

    Symbol {
        anchors.centerIn: parent
        name: root.symbol
        size: root.symbolSize
        color: Theme.fillText
    }
}
