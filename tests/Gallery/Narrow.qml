import QtQuick
import Quillmere

/// Buttons, controls, colours and type on one page.
Rectangle {
    id: root

    color: Theme.canvas

    component Cell: Column {
        id: cell

        property string label
        default property alias content: slot.data

        spacing: 8

        Item {
            id: slot

            anchors.horizontalCenter: parent.horizontalCenter
            width: childrenRect.width
            height: 40
        }

        SectionText {
            anchors.horizontalCenter: parent.horizontalCenter
            text: cell.label
            weight: Font.Medium
        }
    }

    Panel {
        x: 24
        y: 24
        width: 516
        height: 250

        HeadingText { x: 18; y: 12; height: 24; text: "Buttons" }

        Row {
            x: 18
            y: 48
            spacing: 16

            Cell { label: "normal"; ActionButton { text: "Clean"; symbol: "broom"; kind: ActionButton.Primary; size: ActionButton.Large } }
            Cell { label: "down"; ActionButton { text: "Clean"; symbol: "broom"; kind: ActionButton.Primary; size: ActionButton.Large; down: true } }
            Cell { label: "focused"; ActionButton { text: "Clean"; symbol: "broom"; kind: ActionButton.Primary; size: ActionButton.Large; Component.onCompleted: forceActiveFocus(Qt.TabFocusReason) } }
            Cell { label: "disabled"; ActionButton { text: "Clean"; symbol: "broom"; kind: ActionButton.Primary; size: ActionButton.Large; enabled: false } }
        }

        Row {
            x: 18
            y: 120
            spacing: 16

            Cell { label: "quiet"; ActionButton { y: 3; text: "Select All" } }
            Cell { label: "quiet, down"; ActionButton { y: 3; text: "Select All"; down: true } }
            Cell { label: "on"; ActionButton { y: 3; text: "Eco Traffic On"; symbol: "leaf"; kind: ActionButton.On } }
            Cell { label: "icons"; Row { y: 5; spacing: 6; IconButton { symbol: "globe"; accessibleName: "Globe" } IconButton { symbol: "block"; kind: IconButton.Alarming } IconButton { symbol: "clear"; kind: IconButton.Framed } } }
        }

        Row {
            x: 18
            y: 194
            spacing: 16

            ActionButton { text: "Erase System Drive"; kind: ActionButton.Destructive; size: ActionButton.Large }
            ActionButton { y: 4; text: "Run"; kind: ActionButton.DestructiveQuiet; size: ActionButton.Small }
            ActionButton { y: 4; text: "Run"; kind: ActionButton.Tinted; size: ActionButton.Small }
            ActionButton { y: 5; text: "Show More"; symbol: "chevron.down"; kind: ActionButton.TextOnly }
        }
    }
}
