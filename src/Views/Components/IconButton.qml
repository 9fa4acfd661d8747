import QtQuick
import Quillmere

/// A button that is only a symbol. What it does stands in its tooltip and accessible name.
PressableControl {
    id: root

    enum Kind { Plain, Framed, Alarming }

    property int kind: IconButton.Plain
    property string symbol
    property int symbolSize: 18
    property int side: 30
    property color color: Theme.textSecondary
    property color ringColor: Theme.focusRing

    implicitWidth: side
    implicitHeight: side

    background: Rectangle {
        radius: 8
        color: {
            if (!root.enabled)
                return "transparent";
            if (root.kind === IconButton.Alarming)
                return Theme.tint(Theme.redText, root.down ? 0.24 : root.hovered ? 0.18 : 0.12);
            if (root.down)
                return Theme.pressed;
            return root.kind === IconButton.Framed ? (root.hovered ? Theme.quietHover : Theme.quiet)
                                                   : root.hovered ? Theme.tint(Theme.text, 0.06) : "transparent";
        }
        border.width: root.enabled && root.kind === IconButton.Framed ? 1 : 0
        border.color: Theme.cardBorder

        FocusRing {
            shown: root.visualFocus
            controlRadius: 8
            border.color: root.ringColor
        }
    }

    contentItem: Item {
        Symbol {
            anchors.centerIn: parent
            name: root.symbol
            size: root.symbolSize
            color: !root.enabled ? Theme.tint(Theme.textTertiary, 0.5)
                                 : root.kind === IconButton.Alarming ? Theme.redText : root.color
        }
    }

    HoverTip {
        text: root.accessibleName
        shown: root.hovered || root.visualFocus
    }
}
