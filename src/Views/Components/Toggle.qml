import QtQuick
import Quillmere

/// A switch. It asks by `switched` and stands as `on` says, so the owner's answer is what is seen.
PressableControl {
    id: root

    property bool on: false

    signal switched(bool on)

    implicitWidth: 38
    implicitHeight: 22

    Accessible.role: Accessible.CheckBox
    Accessible.checkable: true
    Accessible.checked: on
    Accessible.onToggleAction: {
        if (root.enabled)
            root.clicked();
    }

    onClicked: switched(!on)

    background: Rectangle {
        radius: height / 2
        color: root.enabled ? (root.on ? Theme.accentFill : Theme.switchOff)
                            : root.on ? Theme.switchOnDisabled : Theme.track

        Behavior on color {
            ColorAnimation {
                duration: Theme.colorDuration
            }
        }

        FocusRing {
            shown: root.visualFocus
            controlRadius: parent.radius
        }
    }

    contentItem: Item {
        Rectangle {
            x: root.on ? parent.width - width - 2 : 2
            y: 2
            width: 18
            height: 18
            radius: 9
            color: root.enabled ? Theme.fillText : Theme.knobDisabled

            Behavior on x {
                NumberAnimation {
                    duration: Theme.knobDuration
                    easing.type: Easing.OutCubic
                }
            }

            Rectangle {
                z: -1
                y: 1
                width: 18
                height: 18
                radius: 9
                color: "#0B2A33"
                opacity: root.enabled ? 0.16 : 0.06
            }
        }
    }
}
