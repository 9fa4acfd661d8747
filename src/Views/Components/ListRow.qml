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

    /// It wears the ring. In a KeyedList the list knows when.
    property bool ringed: visualFocus

    readonly property bool marked: interactive && (hovered || ringed)

    implicitHeight: 40
    padding: 0
    focusPolicy: interactive ? Qt.StrongFocus : Qt.NoFocus

    background: Item {
        RowHighlight {
            height: root.highlightHeight - 2 * margin
            shown: root.interactive && (root.hovered || root.down)
            ringed: root.interactive && root.ringed
            color: root.down ? Theme.pressed : Theme.hover
            margin: root.highlightMargin
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
    }
}
