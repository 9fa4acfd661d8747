pragma ComponentBehavior: Bound

import QtQuick
import Quillmere

/// The tiles that lead to other screens, and the one that keeps the machine awake.
Column {
    id: root

    property bool isKeptAwake: false

    signal tabRequested(int tab)
    signal keepAwakeRequested

    readonly property list<QuickDestination> destinations: [
        QuickDestination {
            tab: SidebarTab.SafeCleanup
            titleKey: "nav.safeCleanup"
            symbol: "checkmark.shield"
            color: Theme.green
        },
        QuickDestination {
            tab: SidebarTab.LargeFiles
            titleKey: "nav.largeFiles"
            symbol: "doc.text.magnifyingglass"
            color: Theme.blue
        },
        QuickDestination {
            tab: SidebarTab.Browsers
            titleKey: "nav.browsers"
            symbol: "globe"
            color: Theme.purple
        },
        QuickDestination {
            tab: SidebarTab.Startup
            titleKey: "nav.startup"
            symbol: "power"
            color: Theme.orange
        }
    ]

    spacing: 12

    HeadingText {
        topPadding: 4
        text: Texts.localized("dashboard.quickActions")

        Accessible.role: Accessible.Heading
    }

    Grid {
        id: tiles

        readonly property real tileWidth: (root.width - (columns - 1) * spacing) / columns
        readonly property real tileHeight: {
            let height = keepAwake.implicitHeight;
            for (let i = 0; i < leading.count; ++i)
                height = Math.max(height, leading.itemAt(i) ? leading.itemAt(i).implicitHeight : 0);
            return height;
        }

        columns: root.width < 560 ? 3 : 5
        spacing: Theme.tileGap

        Repeater {
            id: leading

            model: root.destinations

            QuickActionCard {
                required property QuickDestination modelData

                width: tiles.tileWidth
                height: tiles.tileHeight
                title: Texts.localized(modelData.titleKey)
                symbol: modelData.symbol
                color: modelData.color

                onClicked: root.tabRequested(modelData.tab)
            }
        }

        QuickActionCard {
            id: keepAwake

            width: tiles.tileWidth
            height: tiles.tileHeight
            title: Texts.localized(root.isKeptAwake ? "keepAwake.trayOn" : "keepAwake.trayOff")
            symbol: root.isKeptAwake ? "cup.and.saucer.fill" : "cup.and.saucer"
            color: Theme.teal

            onClicked: root.keepAwakeRequested()
        }
    }
}
