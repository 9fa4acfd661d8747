import QtQuick
import Quillmere

/// The maintenance commands at the left, and at the right the console with what the last of them printed.
Destination {
    id: root

    readonly property ToolsViewModel viewModel: viewModels.makeTools(root)
    readonly property real room: width - 2 * Theme.screenMargin - Theme.cardGap

    isModal: viewModel.showDiskUtility

    ScreenHeader {
        width: parent.width
        title: Texts.localized("nav.tools")
    }

    ScrollArea {
        id: cardsArea

        // The shadows of the cards reach beyond them.
        readonly property int margin: 12

        x: Theme.screenMargin - margin
        y: Theme.firstCardY - margin
        width: cards.width + 2 * margin
        height: parent.height - y - Theme.screenMargin + margin
        contentHeight: cards.height + 2 * margin

        Column {
            id: cards

            readonly property real share: (cardsArea.height - 2 * cardsArea.margin - 4 * spacing) / 5

            x: cardsArea.margin
            y: cardsArea.margin
            width: Math.round(Math.min(396, root.room * 0.55))
            spacing: Theme.tileGap

            ToolCard {
                width: parent.width
                height: Math.max(implicitHeight, cards.share)
                symbol: "search"
                title: Texts.localized("tools.spotlight.title")
                description: Texts.localized("tools.spotlight.description")

                onRun: root.viewModel.startSpotlightReset()
            }

            ToolCard {
                width: parent.width
                height: Math.max(implicitHeight, cards.share)
                symbol: "globe"
                title: Texts.localized("tools.dns.title")
                description: Texts.localized("tools.dns.description")

                onRun: root.viewModel.startDNSFlush()
            }

            ToolCard {
                width: parent.width
                height: Math.max(implicitHeight, cards.share)
                symbol: "square.grid.2x2"
                title: Texts.localized("tools.launchServices.title")
                description: Texts.localized("tools.launchServices.description")

                onRun: root.viewModel.startLaunchServicesRebuild()
            }

            ToolCard {
                width: parent.width
                height: Math.max(implicitHeight, cards.share)
                symbol: "memorychip"
                title: Texts.localized("tools.memory.title")
                description: Texts.localized("tools.memory.description")

                onRun: root.viewModel.startMemoryReclaim()
            }

            ToolCard {
                width: parent.width
                height: Math.max(implicitHeight, cards.share)
                symbol: "internaldrive"
                isDangerous: true
                title: Texts.localized("tools.disk.title")
                description: Texts.localized("tools.disk.description")

                onRun: root.viewModel.showDiskUtility = true
            }
        }
    }

    Console {
        x: Theme.screenMargin + cards.width + Theme.cardGap
        y: Theme.firstCardY
        width: parent.width - x - Theme.screenMargin
        height: parent.height - y - Theme.screenMargin
        title: Texts.localized("tools.console")
        output: root.viewModel.consoleOutput
        working: root.viewModel.isRunning
        workingText: root.viewModel.currentToolName
        idleText: Texts.localized("tools.consoleIdle")
    }

    DiskUtilitySheet {
        id: sheet

        visible: root.viewModel.showDiskUtility
        utility: root.viewModels.makeDiskUtility(root.viewModel, root)
        runningText: root.viewModel.currentToolName

        onDismissed: root.viewModel.showDiskUtility = false
    }

    DiskEraseAlert {
        shown: root.viewModel.showDiskUtility
        utility: sheet.utility
    }
}
