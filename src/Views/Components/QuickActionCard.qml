import QtQuick
import Quillmere

/// A large button of its own colour, the symbol over the title. It grows a little under the pointer.
PressableControl {
    id: root

    property alias title: root.text
    property string symbol
    property color color: Theme.blue

    readonly property bool raised: hovered && enabled

    implicitWidth: 160
    implicitHeight: Math.max(92, 56 + label.implicitHeight + 18)
    scale: raised && !Theme.reducedMotion ? 1.02 : 1.0

    Behavior on scale {
        NumberAnimation {
            duration: Theme.colorDuration
            easing.type: Easing.OutCubic
        }
    }

    background: Item {
        Elevation {
            anchors.fill: parent
            visible: !root.raised
        }

        // A scaled rounded rectangle shows seams at its corners, so the two grounds are scaled as one picture.
        Item {
            anchors.fill: parent
            anchors.margins: -6
            layer.enabled: root.raised
            layer.smooth: true

            Rectangle {
                anchors.fill: parent
                anchors.margins: 6
                radius: Theme.cardRadius
                color: Theme.card
                border.width: 1
                border.color: root.raised ? Theme.tint(root.color, 0.4) : Theme.cardBorder
            }

            Rectangle {
                anchors.fill: parent
                anchors.margins: 6
                radius: Theme.cardRadius
                color: Theme.tint(root.color, root.down ? 0.18 : root.raised ? 0.12 : 0.05)
            }
        }

        FocusRing {
            shown: root.visualFocus
            controlRadius: Theme.cardRadius
        }
    }

    contentItem: Item {
        Symbol {
            anchors.horizontalCenter: parent.horizontalCenter
            y: 18
            name: root.symbol
            size: 26
            color: root.enabled ? root.color : Theme.tint(Theme.textTertiary, 0.6)
        }
    }

    BodyText {
        id: label

        x: 8
        y: 56
        width: root.width - 16
        text: root.text
        weight: Font.DemiBold
        color: root.enabled ? Theme.text : Theme.textTertiary
        wrapMode: Text.Wrap
        maximumLineCount: 2
        elide: Text.ElideRight
        horizontalAlignment: Text.AlignHCenter

        Accessible.ignored: true
    }
}
