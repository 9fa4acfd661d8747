import QtQuick
import Quillmere

/// What can be done with the categories of a cleanup screen.
ButtonBar {
    id: root

    property bool canClean: false

    signal selectAllRequested
    signal deselectAllRequested
    signal cleanRequested

    trailing: ActionButton {
        kind: ActionButton.Primary
        size: ActionButton.Large
        text: Texts.localized("cleanup.clean")
        symbol: "broom"
        enabled: root.canClean

        onClicked: root.cleanRequested()
    }

    ActionButton {
        text: Texts.localized("cleanup.selectAll")

        onClicked: root.selectAllRequested()
    }

    ActionButton {
        text: Texts.localized("cleanup.deselectAll")

        onClicked: root.deselectAllRequested()
    }
}
