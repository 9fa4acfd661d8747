import QtQuick
import Quillmere

/// A destination that has nothing to show yet: its title, and calm.
Destination {
    id: root

    ScreenHeader {
        id: header

        width: parent.width
        title: Texts.localized(root.appState.selectedTitleKey)
    }

    Panel {
        x: Theme.screenMargin
        y: Theme.firstCardY
        width: parent.width - 2 * Theme.screenMargin
        height: parent.height - y - Theme.screenMargin

        EmptyState {
            anchors.fill: parent
            symbol: "ripple"
            sentence: Texts.localized("control.nothingHere")
        }
    }
}
