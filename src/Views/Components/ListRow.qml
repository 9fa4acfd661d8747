import QtQuick
import Quillmere

/// A row of a list on a card: highlight under the pointer, ring for the keyboard, a divider from where its text begins.
/// Give it its own children; the highlight lies behind them.
PressableRow {
    id: root

    property real dividerFrom: Theme.cardPadding
    property real dividerEnd: 20
    property bool last: false
    /// False for a row that only shows something: no highlight, no stop for Tab.
    property bool interactive: true
    property color ground: Theme.card
    property int highlightMargin: 6
    property real highlightHeight: height

    readonly property bool marked: interactive && (hovered || visualFocus)

    implicitHeight: 40
    padding: 0
    focusPolicy: interactive ? Qt.StrongFocus : Qt.NoFocus

    background: Item {
        Rectangle {
            x: 8
            y: root.highlightMargin
            width: parent.width - 16
            height: root.highlightHeight - 2 * root.highlightMargin
            visible: root.interactive && (root.hovered || root.down)
            radius: Theme.rowRadius
            color: root.down ? Theme.pressed : Theme.hover
        }

        // Dividers vanish beside a marked row. The one above belongs to the row before, so it is painted over.
        Rectangle {
            x: root.dividerFrom
            y: -1
            width: parent.width - x - root.dividerEnd
            height: 1
            visible: root.marked
            color: root.ground
        }

        Divider {
            x: root.dividerFrom
            y: parent.height - 1
            width: parent.width - x - root.dividerEnd
            visible: !root.last && !root.marked
        }

        Rectangle {
            x: 6
            y: root.highlightMargin - 2
            width: parent.width - 12
            height: root.highlightHeight - 2 * y
            visible: root.interactive && root.visualFocus
            radius: Theme.rowRadius + 2
            color: "transparent"
            border.width: 2
            border.color: Theme.focusRing
        }
    }
}
