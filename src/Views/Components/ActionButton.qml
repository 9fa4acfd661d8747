import QtQuick
import Quillmere

/// A button with a text and, if wanted, a symbol before it. A screen has one Primary.
PressableControl {
    id: root

    enum Kind { Quiet, Primary, Tinted, Destructive, DestructiveQuiet, Link, On }
    enum Size { Regular, Large, Small, Flat }

    property int kind: ActionButton.Quiet
    property int size: kind === ActionButton.Link ? ActionButton.Flat : ActionButton.Regular
    property string symbol

    readonly property color ink: {
        if (!enabled)
            return Theme.tint(Theme.textTertiary, 0.75);
        switch (kind) {
        case ActionButton.Primary:
        case ActionButton.Destructive:
            return Theme.fillText;
        case ActionButton.Tinted:
            return Theme.accentSoftText;
        case ActionButton.DestructiveQuiet:
            return Theme.redText;
        case ActionButton.Link:
            return Theme.accent;
        case ActionButton.On:
            return Theme.greenText;
        default:
            return Theme.text;
        }
    }

    leftPadding: (size === ActionButton.Large ? 20 : symbol === "" ? 16 : 14)
    rightPadding: leftPadding
    topPadding: 8
    bottomPadding: 8
    implicitHeight: Math.max([34, 40, 32, 30][size], implicitContentHeight + 14)

    background: ButtonSurface {
        kind: root.kind
        hovered: root.hovered
        down: root.down
        enabled: root.enabled

        FocusRing {
            shown: root.visualFocus
        }
    }

    contentItem: SymbolLabel {
        text: root.text
        symbol: root.symbol
        symbolSize: root.size === ActionButton.Large ? 18 : 16
        textSize: root.size === ActionButton.Large ? 14 : 13
        weight: root.kind === ActionButton.Link ? Font.Medium : Font.DemiBold
        color: root.ink
    }
}
