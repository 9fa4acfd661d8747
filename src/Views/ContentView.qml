import QtQuick
import Quillmere

/// Two columns: the sidebar, and the screen of the selected destination. A screen is made when it is first shown and
/// goes when it is left.
FocusScope {
    id: root

    required property AppState appState
    required property ViewModelFactory viewModels

    /// Something lies over the screen that has to be answered first.
    readonly property bool isModal: screen.item !== null && screen.item.isModal === true

    /// Has the screen look at the machine anew, where it can.
    function refresh() {
        if (screen.item !== null && screen.item.refresh !== undefined)
            screen.item.refresh();
    }

    focus: true

    SidebarView {
        id: sidebar

        width: edge.sidebarWidth
        height: parent.height
        appState: root.appState
        entries: root.viewModels.makeSidebar(root)
    }

    Loader {
        id: screen

        anchors.left: sidebar.right
        anchors.right: parent.right
        height: parent.height
        focus: true
        sourceComponent: {
            switch (root.appState.selectedTab) {
            case SidebarTab.Dashboard:
                return dashboard;
            case SidebarTab.SafeCleanup:
                return safeCleanup;
            case SidebarTab.History:
                return history;
            default:
                return upcoming;
            }
        }
    }

    SidebarEdge {
        id: edge

        height: parent.height
    }

    WindowButtons {
        anchors.right: parent.right
        anchors.rightMargin: 10
        y: 12
    }

    Component {
        id: dashboard

        DashboardView {
            appState: root.appState
            viewModels: root.viewModels
        }
    }

    Component {
        id: safeCleanup

        SafeCleanupView {
            viewModels: root.viewModels
        }
    }

    Component {
        id: history

        HistoryView {
            viewModels: root.viewModels
        }
    }

    Component {
        id: upcoming

        UpcomingView {
            appState: root.appState
        }
    }
}
