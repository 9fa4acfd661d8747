import QtQuick
import Quillmere

/// What the system starts by itself, with a switch for each, under a warning that always stands.
Destination {
    id: root

    readonly property StartupViewModel viewModel: viewModels.makeStartup(root)

    onRefreshRequested: viewModel.startLoading()
    Component.onCompleted: viewModel.startLoading()

    ScreenHeader {
        width: parent.width
        title: Texts.localized("nav.startup")
    }

    Column {
        id: banners

        x: Theme.screenMargin
        y: Theme.firstCardY
        width: parent.width - 2 * Theme.screenMargin
        spacing: 10

        WarningBanner {
            width: parent.width
            symbol: "exclamationmark.triangle.fill"
            title: Texts.localized("startup.integrityWarning")
            message: Texts.localized("startup.warning")
        }

        FailureBanner {
            width: parent.width
            visible: message !== ""
            message: root.viewModel.errorMessage
            dismissText: Texts.localized("common.dismiss")

            onDismissed: root.viewModel.dismissError()
        }
    }

    Panel {
        id: panel

        x: Theme.screenMargin
        y: banners.y + banners.height + Theme.cardGap
        width: parent.width - 2 * Theme.screenMargin
        height: parent.height - y - Theme.screenMargin

        EmptyState {
            anchors.fill: parent
            visible: root.viewModel.isLoading && root.viewModel.isEmpty
            symbol: "power"
            working: true

            Accessible.role: Accessible.ProgressBar
            Accessible.name: Texts.localized("control.loading")
        }

        EmptyState {
            anchors.fill: parent
            visible: root.viewModel.isEmpty && !root.viewModel.isLoading
            symbol: "power"
            sentence: Texts.localized("startup.noItems")
        }

        FocusScope {
            anchors.fill: parent
            visible: !root.viewModel.isEmpty

            StartupColumns {
                id: columns

                width: panel.width
            }

            ColumnHeading {
                x: columns.nameX
                y: 6
                width: columns.nameWidth
                text: Texts.localized("startup.column.name")
            }

            ColumnHeading {
                x: columns.typeX
                y: 6
                width: columns.typeWidth
                text: Texts.localized("startup.column.type")
            }

            ColumnHeading {
                x: columns.riskX
                y: 6
                width: columns.riskWidth
                text: Texts.localized("cleanup.preview.risk")
            }

            ColumnHeading {
                x: columns.statusX
                y: 6
                width: columns.statusWidth
                text: Texts.localized("startup.column.status")
            }

            // A list that is there stays in its place while it is read again.
            Spinner {
                x: columns.moreX + (columns.moreWidth - width) / 2
                y: 12
                running: root.viewModel.isLoading

                Accessible.role: Accessible.ProgressBar
                Accessible.name: Texts.localized("control.loading")
            }

            Divider {
                y: 40
                width: parent.width
            }

            StartupList {
                id: list

                y: 41
                width: parent.width
                height: parent.height - y - 1
                columns: columns
                model: root.viewModel.rows

                onSwitchRequested: row => root.viewModel.toggle(row)
                onRevealRequested: row => root.viewModel.revealInFinder(row)
            }
        }
    }
}
