import QtQuick
import Quillmere

/// The screen of cleaning riskier ground: a warning that stays, an invitation or what was found so far, and what goes
/// on over them.
Destination {
    id: root

    readonly property ProfessionalCleanupViewModel viewModel: viewModels.makeProfessionalCleanup(root)
    readonly property bool isWorking: viewModel.isScanning || viewModel.isCleaning

    isModal: viewModel.isCleaning || viewModel.hasReport

    onRefreshRequested: {
        if (!isModal && !isWorking)
            viewModel.startScan();
    }

    ScreenHeader {
        width: parent.width
        title: Texts.localized("nav.professionalCleanup")

        SelectedFigure {
            visible: root.viewModel.canClean
            figure: root.viewModel.totalSelectedText
            caption: Texts.localized("cleanup.selected")
        }
    }

    WarningBanner {
        id: warning

        x: Theme.screenMargin
        y: Theme.firstCardY - 4
        width: parent.width - 2 * Theme.screenMargin
        symbol: "exclamationmark.triangle.fill"
        title: Texts.localized("professional.mode")
        message: Texts.localized("professional.warning")
    }

    Panel {
        x: Theme.screenMargin
        y: warning.y + warning.height + Theme.cardGap
        width: parent.width - 2 * Theme.screenMargin
        height: parent.height - y - Theme.screenMargin
        visible: !root.viewModel.showsList

        EmptyState {
            anchors.fill: parent
            visible: root.viewModel.showsStart
            symbol: "wrench.and.screwdriver"
            sentence: Texts.localized("professional.subtitle")
            buttonText: Texts.localized("cleanup.startScan")

            onStarted: root.viewModel.startScan()
        }
    }

    CleanupCategoryList {
        x: Theme.screenMargin
        y: warning.y + warning.height + Theme.cardGap
        width: parent.width - 2 * Theme.screenMargin
        height: buttons.y - y - Theme.cardGap
        visible: root.viewModel.showsList
        accessibleName: Texts.localized("nav.professionalCleanup")
        categories: root.viewModel.categories
    }

    CleanupButtonBar {
        id: buttons

        width: parent.width
        anchors.bottom: parent.bottom
        visible: root.viewModel.showsList
        canClean: root.viewModel.canClean

        onSelectAllRequested: root.viewModel.selectAll()
        onDeselectAllRequested: root.viewModel.deselectAll()
        onCleanRequested: root.viewModel.startCleanup()
    }

    ProgressOverlay {
        visible: root.isWorking
        title: Texts.localized(root.viewModel.isScanning ? "cleanup.scanning" : "cleanup.cleaning")
        message: root.viewModel.isScanning ? root.viewModel.scanStatus : Texts.localized("professional.removing")
        progress: root.viewModel.isScanning ? root.viewModel.scanProgress : root.viewModel.cleanupProgress
        symbol: root.viewModel.isScanning ? "search" : "broom"
        isSentence: true

        onCancelled: root.viewModel.cancel()
    }

    CleanupReportView {
        visible: root.viewModel.hasReport
        report: root.viewModel.report

        onDone: root.viewModel.dismissReport()
    }
}
