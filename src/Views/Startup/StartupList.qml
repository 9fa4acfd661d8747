pragma ComponentBehavior: Bound

import QtQuick
import Quillmere

/// The startup items. Space switches one, and its menu says what else can be done.
KeyedList {
    id: root

    required property StartupColumns columns

    /// Not to be seen, and so not to be used, but the keyboard may stay.
    property bool concealed: false

    signal switchRequested(int row)
    signal revealRequested(var item)

    accessibleName: Texts.localized("nav.startup")

    Accessible.ignored: concealed

    menu: RowMenu {
        id: rowMenu

        list: root

        ContextMenuItem {
            text: Texts.localized("common.revealInFinder")
            symbol: "folder"

            onTriggered: rowMenu.chosen = root.revealRequested
        }
    }

    delegate: StartupRow {
        width: ListView.view.width
        columns: root.columns
        menu: rowMenu
        concealed: root.concealed

        onSwitched: root.switchRequested(index)
    }
}
