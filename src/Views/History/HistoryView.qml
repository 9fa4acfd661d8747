pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Dialogs
import Quillmere

/// What the program has removed so far, newest first, with its export and its clearing.
Destination {
    id: root

    readonly property HistoryViewModel viewModel: viewModels.makeHistory(root)

    property bool showingClearConfirmation: false

    isModal: clearDialog.visible || replaceDialog.visible

    onRefreshRequested: viewModel.loadHistory()
    Component.onCompleted: viewModel.loadHistory()

    ScreenHeader {
        width: parent.width
        title: Texts.localized("nav.history")

        Row {
            visible: !root.viewModel.isEmpty
            spacing: 10

            MenuButton {
                text: Texts.localized("history.export")
                menu: ContextMenu {
                    ContextMenuItem {
                        text: Texts.localized("history.exportCSV")
                        symbol: "doc.text"

                        onTriggered: root.viewModel.exportCSV()
                    }

                    ContextMenuItem {
                        text: Texts.localized("history.exportJSON")
                        symbol: "chevron.left.forwardslash.chevron.right"

                        onTriggered: root.viewModel.exportJSON()
                    }
                }
            }

            ActionButton {
                kind: ActionButton.DestructiveQuiet
                text: Texts.localized("common.delete")
                symbol: "trash"

                onClicked: root.showingClearConfirmation = true
            }
        }
    }

    Panel {
        x: Theme.screenMargin
        y: Theme.firstCardY
        width: parent.width - 2 * Theme.screenMargin
        height: parent.height - y - Theme.screenMargin

        EmptyState {
            anchors.fill: parent
            visible: root.viewModel.isEmpty
            symbol: "clock.arrow.circlepath"
            sentence: Texts.localized("history.noHistory")
        }

        HistoryList {
            anchors.fill: parent
            visible: !root.viewModel.isEmpty
            logs: root.viewModel.logs
        }
    }

    AlertDialog {
        id: clearDialog

        visible: root.showingClearConfirmation
        destructive: true
        symbol: "trash"
        title: Texts.localized("history.clearTitle")
        message: Texts.localized("history.clearWarning")
        confirmText: Texts.localized("history.clearAll")
        cancelText: Texts.localized("common.cancel")

        onConfirmed: {
            root.showingClearConfirmation = false;
            root.viewModel.clearHistory();
        }
        onDismissed: root.showingClearConfirmation = false
    }

    AlertDialog {
        id: replaceDialog

        property string fileName

        visible: false
        destructive: true
        symbol: "doc"
        title: Texts.localized("control.replaceTitle")
        message: fileName + "\n" + Texts.localized("control.replaceWarning")
        confirmText: Texts.localized("control.replace")
        cancelText: Texts.localized("common.cancel")

        onConfirmed: {
            visible = false;
            root.viewModel.replaceExisting();
        }
        onDismissed: visible = false
    }

    FileDialog {
        id: savePanel

        fileMode: FileDialog.SaveFile
        // The question is asked here, because not every panel asks it. Qt's description of the type lacks the property.
        // qmllint disable
        options: FileDialog.DontConfirmOverwrite
        // qmllint enable
        title: Texts.localized("history.export")
        acceptLabel: Texts.localized("control.save")

        onAccepted: root.viewModel.save(selectedFile)
    }

    Connections {
        function onSavePanelRequested(defaultName, extension) {
            savePanel.defaultSuffix = extension;
            savePanel.nameFilters = [extension.toUpperCase() + " (*." + extension + ")"];
            savePanel.selectedFile = savePanel.currentFolder + "/" + defaultName;
            savePanel.open();
        }

        function onReplacementQuestioned(name) {
            replaceDialog.fileName = name;
            replaceDialog.visible = true;
        }

        target: root.viewModel
    }
}
