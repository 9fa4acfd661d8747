import QtQuick
import Quillmere

/// What is installed at the left, and at the right what belongs to the chosen application and can be done with it.
Destination {
    id: root

    readonly property ApplicationsViewModel viewModel: viewModels.makeApplications(root)
    readonly property bool isWorking: viewModel.isScanning || viewModel.isUninstalling
    readonly property real room: width - 2 * Theme.screenMargin - Theme.cardGap
    readonly property real listWidth: Math.round(Math.max(236, Math.min(340, room * 0.38)))

    property bool showingUninstallConfirmation: false
    property bool showingResetConfirmation: false

    // A scan begins by itself and is in nobody's way to another screen.
    isModal: viewModel.isUninstalling || showingUninstallConfirmation || showingResetConfirmation || viewModel.showingTrafficError

    onRefreshRequested: {
        if (!isModal && !isWorking)
            viewModel.startScan();
    }
    Component.onCompleted: viewModel.scanIfEmpty()

    ScreenHeader {
        width: parent.width
        title: Texts.localized("nav.applications")
    }

    Panel {
        id: leftPane

        x: Theme.screenMargin
        y: Theme.firstCardY
        width: root.listWidth
        height: parent.height - y - Theme.screenMargin

        EmptyState {
            anchors.fill: parent
            visible: root.viewModel.isEmpty && !root.viewModel.isScanning
            symbol: "square.grid.2x2"
            sentence: Texts.localized("applications.noneScanned")
            buttonText: Texts.localized("applications.scan")

            onStarted: root.viewModel.startScan()
        }

        ApplicationList {
            anchors.fill: parent
            visible: !root.viewModel.isEmpty
            viewModel: root.viewModel
        }
    }

    Panel {
        x: details.x
        y: Theme.firstCardY
        width: details.width
        height: leftPane.height
        visible: !root.viewModel.hasSelectedApp

        EmptyState {
            anchors.fill: parent
            symbol: "info.circle"
            sentence: Texts.localized("applications.select")
        }
    }

    ApplicationDetails {
        id: details

        x: leftPane.x + leftPane.width + Theme.cardGap
        y: Theme.firstCardY
        width: root.width - x - Theme.screenMargin
        height: root.height - y
        visible: root.viewModel.hasSelectedApp
        viewModel: root.viewModel

        onUninstallRequested: {
            root.viewModel.lookForRunning();
            root.showingUninstallConfirmation = true;
        }
        onClearRequested: {
            root.viewModel.lookForRunning();
            root.showingResetConfirmation = true;
        }
    }

    // What is being removed cannot be stopped half-way.
    ProgressOverlay {
        visible: root.isWorking
        title: Texts.localized(root.viewModel.isScanning ? "applications.scanning" : "applications.uninstalling")
        message: root.viewModel.isScanning ? root.viewModel.currentScanningApp
                                           : Texts.localized("applications.removingAssociated")
        isSentence: !root.viewModel.isScanning
        progress: root.viewModel.isScanning ? root.viewModel.scanProgress : 0.5
        symbol: root.viewModel.isScanning ? "square.grid.2x2" : "trash"
        cancellable: root.viewModel.isScanning

        onCancelled: root.viewModel.cancelScan()
    }

    RemovalAlert {
        visible: root.showingUninstallConfirmation
        isRunning: root.viewModel.isSelectedRunning
        title: Texts.localized("applications.confirmUninstallTitle")
        message: root.viewModel.selected.name + ": " + Texts.localized("applications.uninstallWarning")
        confirmText: Texts.localized("applications.confirmUninstall")

        onConfirmed: {
            root.showingUninstallConfirmation = false;
            root.viewModel.uninstallSelected();
        }
        onDismissed: root.showingUninstallConfirmation = false
    }

    RemovalAlert {
        visible: root.showingResetConfirmation
        isRunning: root.viewModel.isSelectedRunning
        title: Texts.localized("applications.confirmClearTitle")
        message: root.viewModel.selected.name + ": " + Texts.localized("applications.clearWarning")
        confirmText: Texts.localized("applications.confirmClear")

        onConfirmed: {
            root.showingResetConfirmation = false;
            root.viewModel.clearSelected();
        }
        onDismissed: root.showingResetConfirmation = false
    }

    AlertDialog {
        visible: root.viewModel.showingTrafficError
        symbol: "wifi.slash"
        title: Texts.localized("applications.trafficControlErrorTitle")
        message: root.viewModel.trafficErrorMessage
        confirmText: Texts.localized("common.ok")

        onConfirmed: root.viewModel.dismissTrafficError()
        onDismissed: root.viewModel.dismissTrafficError()
    }
}
