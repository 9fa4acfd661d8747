pragma ComponentBehavior: Bound

import QtQuick
import Quillmere

/// The heads of the columns, each of which is pressed to sort by it.
Item {
    id: root

    required property LargeFileColumns columns
    required property LargeFilesViewModel viewModel

    /// Room for the chevron, so that a head stands over the ends of its figures.
    readonly property int chevronRoom: 18

    component Head: TableHeader {
        required property int field

        sorted: root.viewModel.sortField === field
        ascending: root.viewModel.sortAscending

        onClicked: root.viewModel.toggleSort(field)
    }

    implicitHeight: 31

    Head {
        x: root.columns.nameX
        width: Math.min(implicitWidth, root.columns.nameWidth)
        field: LargeFilesViewModel.Name
        text: Texts.localized("largeFiles.column.name")
    }

    Head {
        x: root.columns.sizeEnd - root.columns.sizeWidth
        width: root.columns.sizeWidth + (sorted ? root.chevronRoom : 0)
        alignment: Qt.AlignRight
        field: LargeFilesViewModel.Size
        text: Texts.localized("largeFiles.column.size")
    }

    Head {
        x: root.columns.dateX
        width: Math.min(implicitWidth, root.columns.dateWidth + root.columns.actionsWidth)
        field: LargeFilesViewModel.Date
        text: Texts.localized("largeFiles.column.lastModified")
    }

    Divider {
        x: Theme.cardPadding
        anchors.bottom: parent.bottom
        width: parent.width - 2 * Theme.cardPadding
    }
}
