pragma ComponentBehavior: Bound

import QtQuick
import Quillmere

/// The browsers found, one row each.
CardView {
    id: root

    required property BrowsersViewModel viewModel

    title: Texts.localized("browsers.detected")
    icon: "globe"

    Column {
        x: -Theme.cardPadding
        y: -6
        bottomPadding: -10
        width: root.width

        Accessible.role: Accessible.List
        Accessible.name: root.title

        Repeater {
            id: rows

            model: root.viewModel.profiles

            BrowserRow {
                required property int index

                width: root.width
                last: index === rows.count - 1

                onCleanRequested: root.viewModel.clean(index)
                onQuitRequested: root.viewModel.quit(index)
            }
        }
    }
}
