import QtQuick
import Quillmere

/// An application: its icon, its name, its size, and whether it runs.
PressableRow {
    id: root

    required property int index
    required property string name
    required property string iconName
    required property string sizeText
    required property bool isRunning

    property bool isSelected: false
    property bool isTabStop: false

    readonly property color ink: isSelected ? Theme.accentSoftText : Theme.text

    implicitHeight: 58
    padding: 0
    focusPolicy: isTabStop ? Qt.StrongFocus : Qt.ClickFocus
    accessibleName: name + ", " + sizeText + (isRunning ? ", " + Texts.localized("browsers.running") : "")

    Accessible.selectable: true
    Accessible.selected: isSelected

    background: Item {
        RowHighlight {
            shown: root.isSelected || root.hovered || root.down
            ringed: root.visualFocus
            color: root.isSelected ? Theme.accentSoft : root.down ? Theme.pressed : Theme.hover
            margin: 2
        }
    }

    contentItem: Item {
        ApplicationIcon {
            x: 18
            anchors.verticalCenter: parent.verticalCenter
            side: 34
            icon: root.iconName
            name: root.name
        }

        ElidingText {
            x: 64
            y: 9
            width: parent.width - x - 20
            height: 20
            text: root.name
            size: 14
            weight: Font.DemiBold
            color: root.ink

            Accessible.ignored: true
        }

        Figure {
            id: size

            x: 64
            y: 31
            text: root.sizeText
            size: 12
            weight: Font.Normal
            color: root.isSelected ? Theme.accentSoftText : Theme.textSecondary

            Accessible.ignored: true
        }

        SymbolLabel {
            anchors.right: parent.right
            anchors.rightMargin: 20
            y: 30
            width: Math.min(implicitWidth, parent.width - size.x - size.width - 32)
            visible: root.isRunning
            symbol: "play.circle.fill"
            symbolSize: 14
            text: Texts.localized("browsers.running")
            textSize: 12
            gap: 4
            color: root.isSelected ? Theme.accentSoftText : Theme.greenText

            Accessible.ignored: true
        }
    }
}
