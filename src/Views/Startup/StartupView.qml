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
            visible: root.viewModel.isLoading
            opacity: visible ? 1 : 0
            symbol: "power"
            working: true

            Accessible.role: Accessible.ProgressBar
            Accessible.name: Texts.localized("control.loading")

            // Reading mostly takes no longer than a blink, which shall not be one.
            Behavior on opacity {
                NumberAnimation {
                    duration: Theme.expandDuration
                }
            }
        }

        EmptyState {
            anchors.fill: parent
            visible: root.viewModel.isEmpty && !root.viewModel.isLoading
            symbol: "power"
            sentence: Texts.localized("startup.noItems")
        }

        FocusScope {
            // Gives way while it is read again, and keeps the keyboard meanwhile. Nobody is to use what is not seen.
            anchors.fill: parent
            visible: !root.viewModel.isEmpty
            opacity: root.viewModel.isLoading ? 0 : 1

            Behavior on opacity {
                NumberAnimation {
                    duration: Theme.expandDuration
                }
            }

            StartupColumns {
                id: columns

                width: panel.width
            }

            ColumnHeading {
                x: columns.nameX
                y: 6
                width: columns.nameWidth
                text: Texts.localized("startup.column.name")

                Accessible.ignored: root.viewModel.isLoading
            }

            ColumnHeading {
                x: columns.typeX
                y: 6
                width: columns.typeWidth
                text: Texts.localized("startup.column.type")

                Accessible.ignored: root.viewModel.isLoading
            }

            ColumnHeading {
                x: columns.riskX
                y: 6
                width: columns.riskWidth
                text: Texts.localized("cleanup.preview.risk")

                Accessible.ignored: root.viewModel.isLoading
            }

            ColumnHeading {
                x: columns.statusX
                y: 6
                width: columns.statusWidth
                text: Texts.localized("startup.column.status")

                Accessible.ignored: root.viewModel.isLoading
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
                concealed: root.viewModel.isLoading
                model: root.viewModel.rows

                onSwitchRequested: row => root.viewModel.toggle(row)
                onRevealRequested: item => root.viewModel.revealInFinder(item)
            }

            MouseArea {
                anchors.fill: parent
                visible: root.viewModel.isLoading
                acceptedButtons: Qt.AllButtons
                hoverEnabled: true

                onWheel: wheel => wheel.accepted = true
            }
        }
    }
}
