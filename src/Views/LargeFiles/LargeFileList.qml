pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Quillmere

/// The files found. One stop for Tab; the arrow keys go from file to file, and the menu key says what can be done.
ListView {
    id: root

    required property LargeFileColumns columns

    /// The keyboard was last used, and not the pointer.
    property bool isByKeyboard: false
    // What was chosen in the menu waits until that has gone: only then does the keyboard come back here.
    property var fileToReveal: null
    property var fileToTrash: null

    readonly property int rowsOnAPage: Math.max(1, Math.floor(height / 58) - 1)

    signal revealRequested(var file)
    signal trashRequested(var file)

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
    Accessible.name: Texts.localized("nav.largeFiles")

    onCountChanged: {
        if (currentIndex >= count)
            currentIndex = count - 1;
    }

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

    delegate: LargeFileRow {
        id: row

        width: ListView.view.width
        columns: root.columns
        last: index === ListView.view.count - 1
        ringed: activeFocus && root.isByKeyboard

        onPicked: {
            root.currentIndex = index;
            root.forceActiveFocus(Qt.MouseFocusReason);
            root.isByKeyboard = false;
        }
        onMenuRequested: (x, y, byKeyboard) => contextMenu.show(row, x, y, byKeyboard)
    }

    ContextMenu {
        id: contextMenu

        property var file: null

        function show(row: Item, x: real, y: real, byKeyboard: bool) {
            file = (row as LargeFileRow).file;
            root.isByKeyboard = byKeyboard;
            popup(row, x, y);
            if (byKeyboard)
                currentIndex = 0;
        }

        onClosed: {
            root.forceActiveFocus(Qt.PopupFocusReason);
            if (root.fileToReveal !== null)
                root.revealRequested(root.fileToReveal);
            if (root.fileToTrash !== null)
                root.trashRequested(root.fileToTrash);
            root.fileToReveal = null;
            root.fileToTrash = null;
        }

        ContextMenuItem {
            text: Texts.localized("largeFiles.action.reveal")
            symbol: "folder"

            onTriggered: root.fileToReveal = contextMenu.file
        }

        ContextMenuItem {
            text: Texts.localized("largeFiles.action.trash")
            symbol: "trash"
            destructive: true

            onTriggered: root.fileToTrash = contextMenu.file
        }
    }

    T.ScrollBar.vertical: ScrollIndicatorBar {}
}
