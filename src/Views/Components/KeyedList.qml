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

    /// It lost the keyboard because the whole window did.
    property bool wentWithTheWindow: false

    /// What an arrow key scrolls, in pixels.
    readonly property int line: 40
    readonly property int rowsOnAPage: Math.max(1, Math.floor(height / rowHeight) - 1)

    /// False where there is no row that way.
    function go(step: int): bool {
        const row = Math.max(0, Math.min(count - 1, currentIndex + step));
        if (row === currentIndex)
            return false;
        currentIndex = row;
        positionViewAtIndex(row, ListView.Contain);
        return true;
    }

    /// Goes back, and comes to a row that is longer than the list at its end, as whoever reads upwards does.
    function goBack(rows: int) {
        if (go(-rows) && currentItem !== null && currentItem.height > height)
            contentY = currentItem.y + currentItem.height - height;
    }

    /// Comes back to a row of which what was scrolled through is no longer there, or that was opened out of sight.
    function showHead(row: int) {
        const item = itemAtIndex(row);
        if (item === null || item.y < contentY || item.y >= contentY + height)
            positionViewAtIndex(row, ListView.Beginning);
    }

    /// Scrolls back to the current row where nothing of it is in sight: a key must not do something to a row that nobody
    /// sees. False where it could be seen.
    function bringBack(): bool {
        const row = currentItem;
        if (row !== null && row.y < contentY + height && row.y + row.height > contentY)
            return false;
        positionViewAtIndex(currentIndex, ListView.Contain);
        return true;
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
    // go() brings it into sight. What follows it by itself does so a little later, when a key may have scrolled on.
    highlightFollowsCurrentItem: false

    Accessible.role: Accessible.List
    Accessible.name: accessibleName

    onCountChanged: {
        if (currentIndex >= count)
            currentIndex = count - 1;
    }

    onActiveFocusChanged: {
        if (!activeFocus) {
            wentWithTheWindow = Window.activeFocusItem === null;
            return;
        }
        if (currentIndex < 0)
            currentIndex = 0;
        // A window that comes back to the front is to look as it did.
        else if (!wentWithTheWindow)
            bringBack();
        isByKeyboard = true;
    }

    Keys.onPressed: event => {
        isByKeyboard = true;
        const page = height * 0.9;
        event.accepted = true;
        switch (event.key) {
        case Qt.Key_Up:
            if (!scrollInRow(-line))
                goBack(1);
            break;
        case Qt.Key_Down:
            if (!scrollInRow(line))
                go(1);
            break;
        case Qt.Key_PageUp:
            if (!scrollInRow(-page))
                goBack(rowsOnAPage);
            break;
        case Qt.Key_PageDown:
            if (!scrollInRow(page))
                go(rowsOnAPage);
            break;
        case Qt.Key_Home:
            go(-count);
            positionViewAtBeginning();
            break;
        case Qt.Key_End:
            go(count);
            positionViewAtEnd();
            break;
        default:
            event.accepted = false;
        }
    }

    T.ScrollBar.vertical: ScrollIndicatorBar {}
}
