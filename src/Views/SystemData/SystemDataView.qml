import QtQuick
import Quillmere

/// How the start-up volume divides: a bar and a row for each part of it.
Destination {
    id: root

    readonly property SystemDataViewModel viewModel: viewModels.makeSystemData(root)

    onRefreshRequested: {
        if (!viewModel.isScanning)
            viewModel.startScan();
    }
    Component.onCompleted: viewModel.appear()

    ScreenHeader {
        width: parent.width
        title: Texts.localized("nav.systemData")
    }

    Panel {
        x: Theme.screenMargin
        y: Theme.firstCardY
        width: parent.width - 2 * Theme.screenMargin
        height: parent.height - y - Theme.screenMargin
        visible: root.viewModel.showsStart

        EmptyState {
            anchors.fill: parent
            symbol: "internaldrive"
            sentence: Texts.localized("systemData.subtitle")
            buttonText: Texts.localized("systemData.scanDisk")

            onStarted: root.viewModel.startScan()
        }
    }

    ScrollArea {
        id: scroller

        y: Theme.firstCardY - topMargin
        width: parent.width
        height: parent.height - y
        topMargin: 8
        bottomMargin: Theme.screenMargin
        contentHeight: cards.height
        visible: !root.viewModel.showsStart

        Column {
            id: cards

            x: Theme.screenMargin
            width: scroller.width - 2 * Theme.screenMargin
            spacing: Theme.cardGap

            StorageAllocationCard {
                id: allocation

                width: parent.width
                viewModel: root.viewModel
                markedRow: categories.hoveredRow
            }

            StorageCategoriesCard {
                id: categories

                width: parent.width
                viewModel: root.viewModel
                markedRow: allocation.pointedRow
            }
        }
    }

    ProgressOverlay {
        visible: root.viewModel.isScanning
        title: Texts.localized("systemData.analyzing")
        message: Texts.localized("systemData.categorizing")
        isSentence: true
        progress: root.viewModel.scanProgress
        symbol: "internaldrive"

        onCancelled: root.viewModel.cancelScan()
    }
}
