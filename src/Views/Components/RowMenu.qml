import QtQuick
import Quillmere

/// What can be done with a row of a list. What was chosen waits until the menu has gone: only then does the keyboard come
/// back to the list.
ContextMenu {
    id: root

    required property KeyedList list

    /// What the row stands for, of whom the menu is.
    property var record
    /// What is called with it in the end; null for nothing.
    property var chosen: null
    property bool openedByKeyboard: false

    function show(row: Item, rowRecord: var, x: real, y: real, byKeyboard: bool) {
        record = rowRecord;
        openedByKeyboard = byKeyboard;
        popup(row, x, y);
        if (byKeyboard)
            currentIndex = 0;
    }

    onClosed: {
        list.takeFocus(openedByKeyboard);
        const act = chosen;
        chosen = null;
        if (act !== null)
            act(record);
    }
}
