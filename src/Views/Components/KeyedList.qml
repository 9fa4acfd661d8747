import QtQuick
import QtQuick.Templates as T
import Quillmere

/// A list on a card. It is one stop for Tab: the arrow keys, Home, End and the page keys go from row to row. Its rows wear
/// the ring where they have the keyboard and `isByKeyboard` says so, and call pick() when they are pointed at.
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

    function pick(row: int) {
        currentIndex = row;
        forceActiveFocus(Qt.MouseFocusReason);
        isByKeyboard = false;
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
        const steps = {
            [Qt.Key_PageUp]: -rowsOnAPage,
            [Qt.Key_PageDown]: rowsOnAPage,
            [Qt.Key_Home]: -count,
            [Qt.Key_End]: count
        };
        event.accepted = event.key in steps;
        if (event.accepted)
            go(steps[event.key]);
    }

    T.ScrollBar.vertical: ScrollIndicatorBar {}
}
