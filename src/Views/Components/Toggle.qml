import QtQuick
import QtQuick.Templates as T
import Quillmere

/// A switch. It asks by `switched` and stands as `on` says, so the owner's answer is what is seen.
// A check box for its role, which assistive tools take from the template. Its next state is always the one it has.
T.CheckBox {
    id: root

    property bool on: false
    property string accessibleName: text

    signal switched(bool on)

    implicitWidth: 38
    implicitHeight: 22
    containmentMask: hitArea
    hoverEnabled: true
    checked: on
    nextCheckState: () => root.on ? Qt.Checked : Qt.Unchecked

    Accessible.name: accessibleName
    Accessible.checkable: true
    Accessible.checked: on
    Accessible.onPressAction: {
        if (root.enabled)
            root.clicked();
    }
    Accessible.onToggleAction: {
        if (root.enabled)
            root.clicked();
    }

    Keys.onReturnPressed: event => {
        if (!event.isAutoRepeat)
            clicked();
    }
    Keys.onEnterPressed: event => {
        if (!event.isAutoRepeat)
            clicked();
    }

    onClicked: switched(!on)

    HitArea {
        id: hitArea
    }

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
            x: root.on ? root.implicitWidth - width - 2 : 2
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
