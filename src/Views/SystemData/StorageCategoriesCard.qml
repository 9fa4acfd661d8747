pragma ComponentBehavior: Bound

import QtQuick
import Quillmere

/// The parts of a volume, one row each, the key to its bar.
CardView {
    id: root

    required property SystemDataViewModel viewModel
    /// The row that is pointed at elsewhere. -1 for none.
    property int markedRow: -1
    /// The row under the pointer. -1 for none.
    property int hoveredRow: -1

    title: Texts.localized("systemData.categories")
    icon: "layers"

    Column {
        x: -Theme.cardPadding
        y: -4
        bottomPadding: -10
        width: root.width

        Accessible.role: Accessible.List
        Accessible.name: root.title

        Repeater {
            id: rows

            model: root.viewModel.storageItems

            StorageRow {
                required property int index

                width: root.width
                last: index === rows.count - 1
                marked: hovered || root.markedRow === index

                onHoveredChanged: {
                    if (hovered)
                        root.hoveredRow = index;
                    else if (root.hoveredRow === index)
                        root.hoveredRow = -1;
                }
            }
        }
    }
}
