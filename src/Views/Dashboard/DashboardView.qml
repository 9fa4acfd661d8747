import QtQuick
import Quillmere

/// The machine at a glance: its health, disk, traffic and applications, and what is done about them with one press.
Destination {
    id: root

    readonly property DashboardViewModel viewModel: viewModels.makeDashboard(root)
    readonly property bool isWorking: viewModel.isOptimizing || viewModel.isCleaning
    /// Somebody can see it. Nothing is measured while nobody can, nor while the window waits to be drawn at all.
    readonly property bool isWatched: hasBeenDrawn && Window.visibility !== Window.Hidden
                                      && Window.visibility !== Window.Minimized
    property bool hasBeenDrawn: false

    function watch() {
        if (isWatched)
            viewModel.startAutoRefresh();
        else
            viewModel.stopAutoRefresh();
    }

    isModal: isWorking || viewModel.trafficErrorMessage !== "" || processes.isModal

    onRefreshRequested: {
        viewModel.refresh();
        processes.refresh();
    }
    onIsWatchedChanged: watch()
    Component.onCompleted: watch()
    Component.onDestruction: viewModel.stopAutoRefresh()

    Connections {
        function onFrameSwapped() {
            root.hasBeenDrawn = true;
        }

        target: root.Window.window
        enabled: !root.hasBeenDrawn
    }

    ScreenHeader {
        width: parent.width
        title: Texts.localized("dashboard.title")

        LastScanLabel {
            visible: root.viewModel.lastScanText !== ""
            dateText: root.viewModel.lastScanText
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

        Column {
            id: cards

            x: Theme.screenMargin
            width: scroller.width - 2 * Theme.screenMargin
            spacing: Theme.cardGap

            Row {
                readonly property real cardWidth: (width - spacing) / 2
                readonly property real cardHeight: Math.max(health.implicitHeight, disk.implicitHeight)

                width: parent.width
                spacing: Theme.cardGap

                HealthOverviewCard {
                    id: health

                    width: parent.cardWidth
                    height: parent.cardHeight
                    viewModel: root.viewModel
                }

                DiskSpaceView {
                    id: disk

                    width: parent.cardWidth
                    height: parent.cardHeight
                    viewModel: root.viewModel
                }
            }

            TrafficOverviewCard {
                width: parent.width
                viewModel: root.viewModel
            }

            ResourceMonitorCard {
                id: processes

                width: parent.width
                viewModels: root.viewModels
                isWatched: root.isWatched
            }

            DashboardActions {
                width: parent.width

                onCleanCachesRequested: root.viewModel.runFastCacheCleanup()
                onFastBoostRequested: root.viewModel.runSpeedOptimizer()
                onDetailedCleanupRequested: root.appState.selectedTab = SidebarTab.SafeCleanup
            }

            QuickActions {
                width: parent.width
                isKeptAwake: root.viewModel.isKeptAwake

                onTabRequested: tab => root.appState.selectedTab = tab
                onKeepAwakeRequested: root.viewModel.toggleKeepAwake()
            }
        }
    }

    ProgressOverlay {
        visible: root.viewModel.isOptimizing
        title: Texts.localized("dashboard.speedOptimizer")
        message: Texts.localized("dashboard.optimizing")
        isSentence: true
        symbol: "bolt"
        progress: -1
        cancellable: false
    }

    ProgressOverlay {
        visible: root.viewModel.isCleaning
        title: Texts.localized("dashboard.fastCleaning")
        message: root.viewModel.cleaningMessage
        isSentence: true
        symbol: "broom"
        progress: -1

        onCancelled: root.viewModel.cancelCleanup()
    }

    AlertDialog {
        visible: root.viewModel.trafficErrorMessage !== ""
        symbol: "wifi.slash"
        title: Texts.localized("traffic.controlErrorTitle")
        message: root.viewModel.trafficErrorMessage
        confirmText: Texts.localized("common.ok")

        onConfirmed: root.viewModel.dismissTrafficError()
        onDismissed: root.viewModel.dismissTrafficError()
    }
}
