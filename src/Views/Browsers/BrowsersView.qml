import QtQuick
import Quillmere

/// The browsers of this machine: what of theirs is to be cleaned, and one row for each.
Destination {
    id: root

    readonly property BrowsersViewModel viewModel: viewModels.makeBrowsers(root)
    readonly property bool isWorking: viewModel.isScanning || viewModel.isCleaning
    readonly property bool hasNone: viewModel.isEmpty && !viewModel.isScanning

    // A detection begins by itself and is in nobody's way to another screen.
    isModal: viewModel.isCleaning || viewModel.showingWarningSheet

    onRefreshRequested: {
        if (!isWorking)
            viewModel.startDetection();
    }
    Component.onCompleted: viewModel.startDetection()

    ScreenHeader {
        width: parent.width
        title: Texts.localized("nav.browsers")

        ActionButton {
            text: Texts.localized("common.scan")
            symbol: "refresh"

            onClicked: root.viewModel.startDetection()
        }
    }

    Panel {
        x: Theme.screenMargin
        y: Theme.firstCardY
        width: parent.width - 2 * Theme.screenMargin
        height: parent.height - y - Theme.screenMargin
        visible: root.hasNone

        EmptyState {
            anchors.fill: parent
            symbol: "globe"
            sentence: Texts.localized("browsers.noDetected")
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
        visible: !root.hasNone

        Column {
            id: cards

            x: Theme.screenMargin
            width: scroller.width - 2 * Theme.screenMargin
            spacing: Theme.cardGap

            CleanupScopeCard {
                width: parent.width
                viewModel: root.viewModel
            }

            DetectedBrowsersCard {
                width: parent.width
                viewModel: root.viewModel
            }
        }
    }

    // A cleaning ends with a detection, which is part of it.
    ProgressOverlay {
        visible: root.isWorking
        title: Texts.localized(root.viewModel.isCleaning ? "cleanup.cleaning" : "common.loading")
        message: Texts.localized(root.viewModel.isCleaning ? "browsers.cleaning" : "browsers.detecting")
        isSentence: true
        progress: root.viewModel.isCleaning ? root.viewModel.cleanProgress : root.viewModel.scanProgress
        symbol: root.viewModel.isCleaning ? "broom" : "globe"
        cancellable: false
    }

    AlertDialog {
        visible: root.viewModel.showingWarningSheet
        destructive: true
        symbol: "exclamationmark.triangle.fill"
        title: Texts.localized("browsers.confirmTitle")
        message: Texts.localized("browsers.warning")
        confirmText: Texts.localized("browsers.confirmDeletion")
        cancelText: Texts.localized("common.cancel")

        onConfirmed: root.viewModel.confirmCleaning()
        onDismissed: root.viewModel.dismissCleaning()
    }
}
