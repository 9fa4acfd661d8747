pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Quillmere

/// The startup items. One stop for Tab; the arrow keys go from item to item, Space switches, and the menu key says what
/// else can be done.
ListView {
    id: root

    required property StartupColumns columns

    /// Not to be seen, and so not to be used, but the keyboard may stay.
    property bool concealed: false
    /// The keyboard was last used, and not the pointer.
    property bool isByKeyboard: false
    // What was chosen in the menu waits until that has gone: only then does the keyboard come back here.
    property int rowToReveal: -1

    readonly property int rowsOnAPage: Math.max(1, Math.floor(height / 58) - 1)

    signal switchRequested(int row)
    signal revealRequested(int row)

    function go(step: int) {
        currentIndex = Math.max(0, Math.min(count - 1, currentIndex + step));
    }

    clip: true
    topMargin: 4
    bottomMargin: 4
    boundsBehavior: Flickable.StopAtBounds
    reuseItems: true
    activeFocusOnTab: true
    highlightMoveDuration: 0

    Accessible.role: Accessible.List
    Accessible.name: Texts.localized("nav.startup")
    Accessible.ignored: concealed

    onActiveFocusChanged: {
        if (activeFocus && currentIndex < 0)
            currentIndex = 0;
        if (activeFocus && !contextMenu.visible)
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

    delegate: StartupRow {
        id: row

        width: ListView.view.width
        columns: root.columns
        concealed: root.concealed
        last: index === ListView.view.count - 1
        ringed: activeFocus && root.isByKeyboard

        onPicked: {
            root.currentIndex = index;
            root.forceActiveFocus(Qt.MouseFocusReason);
            root.isByKeyboard = false;
        }
        onSwitched: root.switchRequested(index)
        onMenuRequested: (x, y, byKeyboard) => {
            if (!root.concealed)
                contextMenu.show(row, x, y, byKeyboard);
        }
    }

    ContextMenu {
        id: contextMenu

        property int row: -1

        function show(shown: Item, x: real, y: real, byKeyboard: bool) {
            row = (shown as StartupRow).index;
            root.isByKeyboard = byKeyboard;
            popup(shown, x, y);
            if (byKeyboard)
                currentIndex = 0;
        }

        onClosed: {
            root.forceActiveFocus(Qt.PopupFocusReason);
            if (root.rowToReveal >= 0)
                root.revealRequested(root.rowToReveal);
            root.rowToReveal = -1;
        }

        ContextMenuItem {
            text: Texts.localized("common.revealInFinder")
            symbol: "folder"

            onTriggered: root.rowToReveal = contextMenu.row
        }
    }

    T.ScrollBar.vertical: ScrollIndicatorBar {}
}
