import QtQuick
import Quillmere

/// One of the three wide actions of the dashboard. The first of them is the primary one.
PressableControl {
    id: root

    property string symbol
    property bool primary: false

    property real shade: !enabled || !primary ? 1 : down ? 1.24 : hovered ? 1.10 : 1

    implicitHeight: Math.max(52, implicitContentHeight + 24)
    leftPadding: 16
    rightPadding: 16

    Behavior on shade {
        NumberAnimation {
            duration: Theme.colorDuration
        }
    }

    background: Item {
        Elevation {
            anchors.fill: parent
            level: root.primary ? Elevation.Control : Elevation.Card
            radius: 13
        }

        GradientSurface {
            anchors.fill: parent
            visible: root.primary && root.enabled
            horizontal: true
            radius: 13
            start: Qt.darker(Theme.heroStart, root.shade)
            end: Qt.darker(Theme.heroEnd, root.shade)
        }

        Rectangle {
            anchors.fill: parent
            visible: !root.primary || !root.enabled
            radius: 13
            color: !root.enabled ? Theme.track : root.down ? Theme.pressed : root.hovered ? Theme.hover : Theme.card
            border.width: 1
            border.color: Theme.cardBorder

            Behavior on color {
                ColorAnimation {
                    duration: Theme.colorDuration
                }
            }
        }

        FocusRing {
            shown: root.visualFocus
            controlRadius: 13
        }
    }

    contentItem: SymbolLabel {
        text: root.text
        symbol: root.symbol
        symbolSize: 20
        symbolColor: !root.enabled ? color : root.primary ? Theme.fillText : Theme.accent
        textSize: 14
        gap: 10
        color: !root.enabled ? Theme.tint(Theme.textTertiary, 0.75) : root.primary ? Theme.fillText : Theme.text
    }
}
