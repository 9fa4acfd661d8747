pragma ComponentBehavior: Bound

import QtQuick
import Quillmere

/// The tiles that lead to other screens, and the one that keeps the machine awake.
Column {
    id: root

    property bool isKeptAwake: false

    signal tabRequested(int tab)
    signal keepAwakeRequested

    readonly property list<QtObject> destinations: [
        QtObject {
            readonly property int tab: SidebarTab.SafeCleanup
            readonly property string titleKey: "nav.safeCleanup"
            readonly property string symbol: "checkmark.shield"
            readonly property color color: Theme.green
        },
        QtObject {
            readonly property int tab: SidebarTab.LargeFiles
            readonly property string titleKey: "nav.largeFiles"
            readonly property string symbol: "doc.text.magnifyingglass"
            readonly property color color: Theme.blue
        },
        QtObject {
            readonly property int tab: SidebarTab.Browsers
            readonly property string titleKey: "nav.browsers"
            readonly property string symbol: "globe"
            readonly property color color: Theme.purple
        },
        QtObject {
            readonly property int tab: SidebarTab.Startup
            readonly property string titleKey: "nav.startup"
            readonly property string symbol: "power"
            readonly property color color: Theme.orange
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
                required property QtObject modelData

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
