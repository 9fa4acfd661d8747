pragma ComponentBehavior: Bound

import QtQuick
import Quillmere

/// The running applications with their load and memory, to be searched, sorted, cut off from the network and ended.
Panel {
    id: root

    required property ViewModelFactory viewModels
    /// Somebody can see it.
    property bool isWatched: true

    readonly property ResourceMonitorViewModel viewModel: viewModels.makeResourceMonitor(root)
    /// A question or a message of this card has to be answered first.
    readonly property bool isModal: viewModel.showingQuitConfirmation || viewModel.trafficErrorMessage !== ""

    readonly property ProcessColumns columns: ProcessColumns {
        width: root.width
    }

    function watch() {
        if (isWatched)
            viewModel.startMonitoring();
        else
            viewModel.stopMonitoring();
    }

    function refresh() {
        viewModel.refreshProcesses();
    }

    implicitHeight: more.y + more.height + 8

    Accessible.role: Accessible.Grouping
    Accessible.name: title.text

    onIsWatchedChanged: watch()
    Component.onCompleted: watch()
    Component.onDestruction: viewModel.stopMonitoring()

    Symbol {
        x: Theme.cardPadding
        y: 19
        name: "cpu"
        size: 18
        color: Theme.accent
    }

    HeadingText {
        id: title

        x: Theme.cardPadding + 27
        y: 16
        height: 24
        text: Texts.localized("dashboard.resourceMonitor")

        Accessible.role: Accessible.Heading
    }

    ProcessPickers {
        id: pickers

        readonly property bool isBeside: title.x + title.implicitWidth + 24 + implicitWidth
            <= root.width - Theme.cardPadding

        x: isBeside ? root.width - Theme.cardPadding - implicitWidth : Theme.cardPadding
        y: isBeside ? 12 : 50
        viewModel: root.viewModel
    }

    SearchField {
        id: search

        x: Theme.cardPadding
        y: pickers.y + pickers.implicitHeight + 12
        width: parent.width - 2 * Theme.cardPadding
        placeholderText: Texts.localized("resource.search")

        onTextChanged: root.viewModel.searchText = text
    }

    ProcessHeader {
        id: header

        y: search.y + search.height + 12
        width: parent.width
        visible: !root.viewModel.isEmpty
        columns: root.columns
        sortField: root.viewModel.sortField

        onSortRequested: field => root.viewModel.sortField = field
    }

    BodyText {
        x: Theme.cardPadding
        y: header.y
        width: parent.width - 2 * Theme.cardPadding
        height: header.height + 40
        visible: root.viewModel.isEmpty
        text: Texts.localized("common.loading")
        color: Theme.textSecondary
        horizontalAlignment: Text.AlignHCenter
    }

    Column {
        id: rows

        y: header.y + header.height + 2
        width: parent.width

        Accessible.role: Accessible.List
        Accessible.name: title.text

        Repeater {
            id: repeater

            model: root.viewModel.processes

            ProcessRow {
                required property int index

                width: rows.width
                columns: root.columns
                last: index === repeater.count - 1

                onTrafficToggled: root.viewModel.toggleInternetAccess(pid)
                onQuitRequested: root.viewModel.askToQuit(pid)
            }
        }
    }

    Divider {
        id: divider

        x: Theme.cardPadding
        y: root.viewModel.isEmpty ? header.y + header.height + 42 : rows.y + rows.height + 2
        width: parent.width - 2 * Theme.cardPadding
    }

    ActionButton {
        id: more

        anchors.horizontalCenter: parent.horizontalCenter
        y: divider.y + 8
        kind: ActionButton.Link
        text: Texts.localized(root.viewModel.isExpanded ? "resource.showLess" : "resource.showMore")
        symbol: root.viewModel.isExpanded ? "chevron.up" : "chevron.down"

        onClicked: root.viewModel.isExpanded = !root.viewModel.isExpanded
    }

    AlertDialog {
        visible: root.viewModel.showingQuitConfirmation
        destructive: true
        symbol: "xmark.octagon"
        title: Texts.localized("resource.forceQuitTitle")
        message: root.viewModel.quitConfirmationText
        confirmText: Texts.localized("resource.forceQuit")
        cancelText: Texts.localized("common.cancel")

        onConfirmed: root.viewModel.confirmQuit()
        onDismissed: root.viewModel.dismissQuit()
    }

    AlertDialog {
        visible: root.viewModel.trafficErrorMessage !== ""
        symbol: "wifi.slash"
        title: Texts.localized("resource.trafficControlErrorTitle")
        message: root.viewModel.trafficErrorMessage
        confirmText: Texts.localized("common.ok")

        onConfirmed: root.viewModel.dismissTrafficError()
        onDismissed: root.viewModel.dismissTrafficError()
    }
}
