import QtQuick
import Quillmere

/// Two columns: the sidebar, and the screen of the selected destination. A screen is made when it is first shown and
/// goes when it is left.
FocusScope {
    id: root

    required property AppState appState
    required property ViewModelFactory viewModels
    /// The setup wizard lies over everything. Only the wizard itself takes it away.
    property bool showingWelcome: false

    readonly property Destination current: screen.item as Destination
    /// Something lies over the screen that has to be answered first.
    readonly property bool isModal: showingWelcome || (current !== null && current.isModal)

    /// Has the screen look at the machine anew, where it can.
    function refresh() {
        if (current !== null)
            current.refreshRequested();
    }

    /// The file of a destination's screen.
    function sourceOf(tab: int): string {
        switch (tab) {
        case SidebarTab.Dashboard:
            return "Dashboard/DashboardView.qml";
        case SidebarTab.SafeCleanup:
            return "SafeCleanup/SafeCleanupView.qml";
        case SidebarTab.ProfessionalCleanup:
            return "ProfessionalCleanup/ProfessionalCleanupView.qml";
        case SidebarTab.LargeFiles:
            return "LargeFiles/LargeFilesView.qml";
        case SidebarTab.Browsers:
            return "Browsers/BrowsersView.qml";
        case SidebarTab.SystemData:
            return "SystemData/SystemDataView.qml";
        case SidebarTab.Startup:
            return "Startup/StartupView.qml";
        case SidebarTab.Applications:
            return "Applications/ApplicationsView.qml";
        case SidebarTab.Tools:
            return "Tools/ToolsView.qml";
        case SidebarTab.History:
            return "History/HistoryView.qml";
        default:
            return "Settings/SettingsView.qml";
        }
    }

    function showSelectedTab() {
        screen.setSource(sourceOf(appState.selectedTab), {
            "appState": appState,
            "viewModels": viewModels
        });
    }

    focus: true

    Component.onCompleted: showSelectedTab()

    SidebarView {
        id: sidebar

        width: edge.sidebarWidth
        height: parent.height
        appState: root.appState
        entries: root.viewModels.makeSidebar(root)
        viewModels: root.viewModels
    }

    Loader {
        id: screen

        anchors.left: sidebar.right
        anchors.right: parent.right
        height: parent.height
        focus: true
    }

    Connections {
        function onSelectedTabChanged() {
            root.showSelectedTab();
        }

        target: root.appState
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

    Loader {
        id: welcome

        sourceComponent: WelcomeView {
            viewModels: root.viewModels // qmllint disable unqualified
            visible: root.showingWelcome // qmllint disable unqualified

            onFinished: root.showingWelcome = false // qmllint disable unqualified
            onClosed: welcome.active = false // qmllint disable unqualified
        }
        active: false

        Component.onCompleted: active = root.showingWelcome
    }
}
