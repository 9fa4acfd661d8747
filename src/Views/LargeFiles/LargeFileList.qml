pragma ComponentBehavior: Bound

import QtQuick
import Quillmere

/// The files found, with a menu for each that says what can be done.
KeyedList {
    id: root

    required property LargeFileColumns columns

    signal revealRequested(var file)
    signal trashRequested(var file)

    accessibleName: Texts.localized("nav.largeFiles")

    menu: RowMenu {
        id: rowMenu

        list: root

        ContextMenuItem {
            text: Texts.localized("largeFiles.action.reveal")
            symbol: "folder"

            onTriggered: rowMenu.chosen = root.revealRequested
        }

        ContextMenuItem {
            text: Texts.localized("largeFiles.action.trash")
            symbol: "trash"
            destructive: true

            onTriggered: rowMenu.chosen = root.trashRequested
        }
    }

    delegate: LargeFileRow {
        width: ListView.view.width
        columns: root.columns
        menu: rowMenu
    }
}
