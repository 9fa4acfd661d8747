import QtQuick
import Quillmere

/// The screen of ordinary cleaning: an invitation, the categories found, and what goes on over them.
Destination {
    id: root

    readonly property SafeCleanupViewModel viewModel: viewModels.makeSafeCleanup(root)
    readonly property bool isWorking: viewModel.isScanning || viewModel.isCleaning

    isModal: viewModel.isCleaning || viewModel.hasReport

    onRefreshRequested: {
        if (!isModal && !isWorking)
            viewModel.startScan();
    }

    ScreenHeader {
        width: parent.width
        title: Texts.localized("cleanup.title")

        SelectedFigure {
            visible: root.viewModel.isScanComplete
            figure: root.viewModel.totalSelectedText
            caption: Texts.localized("cleanup.selected")
        }
    }

    Panel {
        x: Theme.screenMargin
        y: Theme.firstCardY
        width: parent.width - 2 * Theme.screenMargin
        height: parent.height - y - Theme.screenMargin
        visible: !root.viewModel.isScanComplete

        EmptyState {
            anchors.fill: parent
            visible: root.viewModel.showsStart && !root.viewModel.isScanning
            symbol: "checkmark.shield"
            sentence: Texts.localized("cleanup.subtitle")
            buttonText: Texts.localized("cleanup.startScan")

            onStarted: root.viewModel.startScan()
        }
    }

    CleanupCategoryList {
        x: Theme.screenMargin
        y: Theme.firstCardY
        width: parent.width - 2 * Theme.screenMargin
        height: buttons.y - y - Theme.cardGap
        visible: root.viewModel.isScanComplete
        accessibleName: Texts.localized("nav.safeCleanup")
        categories: root.viewModel.categories
    }

    CleanupButtonBar {
        id: buttons

        width: parent.width
        anchors.bottom: parent.bottom
        visible: root.viewModel.isScanComplete
        canClean: root.viewModel.canClean

        onSelectAllRequested: root.viewModel.selectAll()
        onDeselectAllRequested: root.viewModel.deselectAll()
        onCleanRequested: root.viewModel.startCleanup()
    }

    ProgressOverlay {
        visible: root.isWorking
        title: Texts.localized(root.viewModel.isScanning ? "cleanup.scanning" : "cleanup.cleaning")
        message: root.viewModel.isScanning ? root.viewModel.scanStatus : Texts.localized("cleanup.removingSelected")
        progress: root.viewModel.isScanning ? root.viewModel.scanProgress : root.viewModel.cleanupProgress
        symbol: root.viewModel.isScanning ? "search" : "broom"

        onCancelled: root.viewModel.cancel()
    }

    CleanupReportView {
        visible: root.viewModel.hasReport
        report: root.viewModel.report

        onDone: root.viewModel.dismissReport()
    }
}
