import QtQuick
import Quillmere

/// A destination in the sidebar.
PressableRow {
    id: root

    property string symbol
    property bool selected: false

    implicitWidth: 199
    implicitHeight: Math.max(31, label.implicitHeight + 13)

    Accessible.selectable: true
    Accessible.selected: selected

    background: Item {
        Elevation {
            anchors.fill: parent
            anchors.bottomMargin: 1
            visible: root.selected && !Theme.dark
            level: Elevation.Control
            radius: Theme.sidebarRowRadius
        }

        Rectangle {
            anchors.fill: parent
            anchors.bottomMargin: 1
            radius: Theme.sidebarRowRadius
            color: root.selected ? Theme.sidebarSelection
                                 : Theme.tint(Theme.text, root.down ? 0.10 : root.hovered ? 0.06 : 0)
            border.width: root.selected && !Theme.dark ? 1 : 0
            border.color: Theme.sidebarSelectionBorder

            FocusRing {
                shown: root.visualFocus
                controlRadius: Theme.sidebarRowRadius
                gap: -2
            }
        }
    }

    Symbol {
        x: 11
        y: (root.height - 1 - height) / 2
        name: root.symbol
        size: 18
        color: root.selected ? Theme.accent : Theme.textSecondary
    }

    BodyText {
        id: label

        x: 38
        y: (root.height - 1 - height) / 2
        width: root.width - x - 8
        text: root.text
        weight: root.selected ? Font.DemiBold : Font.Medium
        color: root.selected ? Theme.sidebarSelectionText : Theme.text
        wrapMode: Text.Wrap

        Accessible.ignored: true
    }
}
