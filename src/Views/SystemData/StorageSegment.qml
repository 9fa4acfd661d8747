import QtQuick
import Quillmere

/// One part of a volume in its bar: its colour, its symbol where there is room, and its name and size when asked.
Item {
    id: root

    required property string label
    required property int sliceColor
    required property string iconName
    required property string sizeText
    required property string percentageText
    /// Of the whole bar. 0 for a part that is left out.
    required property real fraction

    property bool marked: false

    readonly property int gap: 2
    readonly property bool isPointed: pointer.hovered || activeFocus

    signal pointed(bool isPointed)

    visible: fraction > 0

    Accessible.role: Accessible.StaticText
    Accessible.name: label + ", " + sizeText + ", " + percentageText
    Accessible.focusable: true

    onIsPointedChanged: pointed(isPointed)

    HoverHandler {
        id: pointer
    }

    Rectangle {
        id: fill

        width: Math.max(1, parent.width - root.gap)
        height: parent.height
        radius: Math.min(6, width / 2)
        color: Theme.slices[root.sliceColor]

        Rectangle {
            anchors.fill: parent
            visible: root.marked || root.isPointed
            radius: parent.radius
            color: Theme.tint(Theme.card, 0.22)
        }

        Symbol {
            anchors.centerIn: parent
            visible: fill.width >= 24
            name: root.iconName
            size: 14
            color: Theme.card
        }

        FocusRing {
            shown: root.activeFocus
            controlRadius: fill.radius
            gap: 1
        }
    }

    HoverTip {
        text: root.Accessible.name
        shown: root.isPointed
    }
}
