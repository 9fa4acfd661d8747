import QtQuick
import QtQuick.Templates as T
import Quillmere

/// A list on a card. It is one stop for Tab: the arrow keys, Home, End and the page keys go from row to row. Its rows wear
/// the ring where they have the keyboard and `isByKeyboard` says so, and call pick() when they are pointed at. Through a
/// row that is open and goes on out of sight, the arrow and page keys scroll first.
ListView {
    id: root

    property string accessibleName
    /// Of a row that is closed.
    property int rowHeight: 58
    /// The keyboard was last used, and not the pointer.
    property bool isByKeyboard: false
    /// What can be done with a row; null for nothing.
    property T.Menu menu: null

    readonly property int rowsOnAPage: Math.max(1, Math.floor(height / rowHeight) - 1)

    function go(step: int) {
        currentIndex = Math.max(0, Math.min(count - 1, currentIndex + step));
    }

    /// Gives the keyboard to the row that it was at.
    function takeFocus(byKeyboard: bool) {
        forceActiveFocus(byKeyboard ? Qt.TabFocusReason : Qt.PopupFocusReason);
        isByKeyboard = byKeyboard;
    }

    function pick(row: int) {
        currentIndex = row;
        forceActiveFocus(Qt.MouseFocusReason);
        isByKeyboard = false;
    }

    /// Where the current row is open and goes on above or below what is in sight of it, scrolls @p pixels that way, as far
    /// as it goes. False where nothing of it is left to be seen there.
    function scrollInRow(pixels: real): bool {
        const row = currentItem;
        if (row === null || row.height <= rowHeight)
            return false;
        const hidden = pixels < 0 ? contentY - row.y : row.y + row.height - contentY - height;
        if (hidden <= 0 || hidden >= row.height)
            return false;
        contentY += pixels < 0 ? -Math.min(hidden, -pixels) : Math.min(hidden, pixels);
        return true;
    }

    clip: true
    topMargin: 4
    bottomMargin: 4
    boundsBehavior: Flickable.StopAtBounds
    reuseItems: true
    activeFocusOnTab: true
    highlightMoveDuration: 0

    Accessible.role: Accessible.List
    Accessible.name: accessibleName

    onCountChanged: {
        if (currentIndex >= count)
            currentIndex = count - 1;
    }

    onActiveFocusChanged: {
        if (activeFocus && currentIndex < 0)
            currentIndex = 0;
        if (activeFocus)
            isByKeyboard = true;
    }

    Keys.onPressed: event => {
        isByKeyboard = true;
        const scrolls = {
            [Qt.Key_Up]: -40,
            [Qt.Key_Down]: 40,
            [Qt.Key_PageUp]: -height * 0.9,
            [Qt.Key_PageDown]: height * 0.9
        };
        const steps = {
            [Qt.Key_PageUp]: -rowsOnAPage,
            [Qt.Key_PageDown]: rowsOnAPage,
            [Qt.Key_Home]: -count,
            [Qt.Key_End]: count
        };
        event.accepted = event.key in scrolls && scrollInRow(scrolls[event.key]);
        if (!event.accepted && event.key in steps) {
            go(steps[event.key]);
            event.accepted = true;
        }
    }

    T.ScrollBar.vertical: ScrollIndicatorBar {}
}
