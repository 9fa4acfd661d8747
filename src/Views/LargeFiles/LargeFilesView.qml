import QtQuick
import Quillmere

/// The large files of the home: an invitation to look for them, and the list, narrowed and sorted as one likes.
Destination {
    id: root

    readonly property LargeFilesViewModel viewModel: viewModels.makeLargeFiles(root)

    /// The file that is asked about; null for none.
    property var fileToConfirmDelete: null

    isModal: trashDialog.visible

    onRefreshRequested: {
        if (!isModal && !viewModel.isScanning)
            viewModel.startScan();
    }

    ScreenHeader {
        width: parent.width
        title: Texts.localized("nav.largeFiles")

        Figure {
            visible: !root.viewModel.isEmpty
            text: root.viewModel.summary
            size: 15
            color: Theme.textSecondary
        }
    }

    Panel {
        id: panel

        x: Theme.screenMargin
        y: Theme.firstCardY
        width: parent.width - 2 * Theme.screenMargin
        height: parent.height - y - Theme.screenMargin

        EmptyState {
            anchors.fill: parent
            visible: root.viewModel.isEmpty && !root.viewModel.isScanning
            symbol: "doc.text.magnifyingglass"
            sentence: Texts.localized("largeFiles.subtitle")
            buttonText: Texts.localized("cleanup.startScan")

            onStarted: root.viewModel.startScan()
        }

        FocusScope {
            anchors.fill: parent
            visible: !root.viewModel.isEmpty

            LargeFileColumns {
                id: columns

                width: panel.width
            }

            SegmentedPicker {
                id: filter

                x: Theme.cardPadding
                y: 16
                width: Math.min(implicitWidth, parent.width - 2 * x)
                wraps: true
                accessibleName: Texts.localized("nav.largeFiles")
                model: root.viewModel.offeredCategories
                currentIndex: root.viewModel.selectedCategory

                onPicked: index => root.viewModel.selectedCategory = index
            }

            LargeFilesHeader {
                id: header

                y: filter.y + filter.height + 8
                width: parent.width
                columns: columns
                viewModel: root.viewModel
            }

            LargeFileList {
                y: header.y + header.height
                width: parent.width
                height: parent.height - y - 1
                columns: columns
                model: root.viewModel.rows

                onRevealRequested: file => root.viewModel.revealInFinder(file)
                onTrashRequested: file => root.fileToConfirmDelete = file
            }
        }
    }

    AlertDialog {
        id: trashDialog

        visible: root.fileToConfirmDelete !== null
        destructive: true
        symbol: "trash"
        title: Texts.localized("largeFiles.trashConfirm")
        message: root.fileToConfirmDelete === null ? "" : root.viewModel.descriptionOf(root.fileToConfirmDelete)
        confirmText: Texts.localized("largeFiles.action.trash")
        cancelText: Texts.localized("common.cancel")

        onConfirmed: {
            root.viewModel.moveToTrash(root.fileToConfirmDelete);
            root.fileToConfirmDelete = null;
        }
        onDismissed: root.fileToConfirmDelete = null
    }

    ProgressOverlay {
        visible: root.viewModel.isScanning
        title: Texts.localized("largeFiles.scanning")
        message: root.viewModel.currentScanningPath
        progress: root.viewModel.scanProgress

        onCancelled: root.viewModel.cancelScan()
    }
}
