import QtQuick
import Quillmere

/// Everything that the user decides about the program, in eight sections, and the program's own removal.
Destination {
    id: root

    readonly property SettingsViewModel viewModel: viewModels.makeSettings(root)

    property bool showingUninstallConfirmation: false

    isModal: showingUninstallConfirmation

    onRefreshRequested: viewModel.appear()
    Component.onCompleted: viewModel.appear()

    ScreenHeader {
        width: parent.width
        title: Texts.localized("settings.title")
    }

    ScrollArea {
        id: scroller

        y: Theme.firstCardY - topMargin
        width: parent.width
        height: parent.height - y
        topMargin: 8
        bottomMargin: Theme.screenMargin
        contentHeight: sections.height

        Component.onCompleted: contentY = -topMargin

        Column {
            id: sections

            readonly property real cardWidth: Math.min(900, scroller.width - 2 * Theme.screenMargin)

            x: Theme.screenMargin
            width: cardWidth
            spacing: Theme.cardGap

            LanguageCard {
                width: sections.cardWidth
                viewModel: root.viewModel
            }

            AppearanceCard {
                width: sections.cardWidth
                viewModel: root.viewModel
            }

            MenuBarCard {
                width: sections.cardWidth
                viewModel: root.viewModel
            }

            CardView {
                width: sections.cardWidth
                icon: "cup.and.saucer"
                title: Texts.localized("keepAwake.title")

                SwitchRow {
                    width: sections.cardWidth - 2 * Theme.cardPadding
                    text: Texts.localized("keepAwake.title")
                    caption: Texts.localized("keepAwake.subtitle")
                    on: root.viewModel.keepAwake

                    onSwitched: on => root.viewModel.keepAwake = on
                }
            }

            CardView {
                width: sections.cardWidth
                icon: "checkmark.shield"
                title: Texts.localized("settings.safety")

                SwitchRow {
                    width: sections.cardWidth - 2 * Theme.cardPadding
                    text: Texts.localized("settings.confirmDangerous")
                    on: root.viewModel.confirmsDangerous

                    onSwitched: on => root.viewModel.confirmsDangerous = on
                }
            }

            PermissionsCard {
                width: sections.cardWidth
                viewModel: root.viewModel
            }

            AboutCard {
                width: sections.cardWidth
                viewModel: root.viewModel
            }

            CardView {
                width: sections.cardWidth
                icon: "wrench"
                title: Texts.localized("settings.uninstall.header")

                ActionButton {
                    width: Math.min(implicitWidth, sections.cardWidth - 2 * Theme.cardPadding)
                    kind: ActionButton.DestructiveQuiet
                    symbol: "trash.fill"
                    text: Texts.localized("settings.uninstall.title")

                    onClicked: root.showingUninstallConfirmation = true
                }
            }
        }
    }

    AlertDialog {
        visible: root.showingUninstallConfirmation
        destructive: true
        symbol: "trash.fill"
        title: Texts.localized("settings.uninstall.confirm")
        message: Texts.localized("settings.uninstall.message")
        confirmText: Texts.localized("settings.uninstall.confirm")
        cancelText: Texts.localized("common.cancel")

        onConfirmed: root.viewModel.selfUninstall()
        onDismissed: root.showingUninstallConfirmation = false
    }
}
