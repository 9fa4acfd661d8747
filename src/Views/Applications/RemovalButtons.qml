import QtQuick
import Quillmere

/// The buttons that remove the application or its data, side by side or, where they do not fit, one above the other.
Item {
    id: root

    required property ApplicationsViewModel viewModel

    readonly property bool canClear: viewModel.selected.fileNames.length > 0
    readonly property bool stacked: canClear
        && uninstallButton.implicitWidth + clearButton.implicitWidth + 12 > width

    signal uninstallRequested
    signal clearRequested

    implicitHeight: column.height + Theme.screenMargin

    Column {
        id: column

        width: parent.width
        spacing: 10

        CaptionText {
            width: parent.width
            visible: !root.viewModel.selected.canBeUninstalled
            text: Texts.localized("control.systemApplication")
            wrapMode: Text.Wrap
        }

        Item {
            width: parent.width
            height: root.stacked ? uninstallButton.height + clearButton.height + 10 : uninstallButton.height

            ActionButton {
                id: uninstallButton

                width: root.stacked ? parent.width : implicitWidth
                enabled: root.viewModel.selected.canBeUninstalled
                kind: ActionButton.Destructive
                size: ActionButton.Large
                symbol: "trash"
                text: Texts.localized("applications.uninstall")

                onClicked: root.uninstallRequested()
            }

            ActionButton {
                id: clearButton

                x: root.stacked ? 0 : uninstallButton.width + 12
                y: root.stacked ? uninstallButton.height + 10 : 0
                width: root.stacked ? parent.width : implicitWidth
                visible: root.canClear
                kind: ActionButton.DestructiveQuiet
                size: ActionButton.Large
                symbol: "broom"
                text: Texts.localized("applications.clearData")

                onClicked: root.clearRequested()
            }
        }
    }
}
