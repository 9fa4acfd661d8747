import QtQuick
import Quillmere

/// The sidebar as the main window has it, for the pictures.
Rectangle {
    width: 220
    gradient: Gradient {
        GradientStop {
            position: 0
            color: Theme.sidebarTop
        }
        GradientStop {
            position: 1
            color: Theme.sidebarBottom
        }
    }

    Rectangle {
        anchors.right: parent.right
        width: 1
        height: parent.height
        color: Theme.sidebarHairline
    }

    Column {
        x: 10
        y: 10

        SidebarSection { first: true; title: Texts.localized("sidebar.overview") }
        SidebarRow { text: Texts.localized("nav.dashboard"); symbol: "gauge.medium" }
        Item {
            width: 199
            height: 138

            PromotionCard { y: 6 }
        }
        SidebarSection { title: Texts.localized("sidebar.cleanup") }
        SidebarRow { text: Texts.localized("nav.safeCleanup"); symbol: "checkmark.shield"; selected: true }
        SidebarRow { text: Texts.localized("nav.professionalCleanup"); symbol: "wrench.and.screwdriver" }
        SidebarSection { title: Texts.localized("sidebar.analysis") }
        SidebarRow { text: Texts.localized("nav.largeFiles"); symbol: "doc.text.magnifyingglass" }
        SidebarRow { text: Texts.localized("nav.browsers"); symbol: "globe" }
        SidebarRow { text: Texts.localized("nav.systemData"); symbol: "internaldrive" }
        SidebarSection { title: Texts.localized("sidebar.system") }
        SidebarRow { text: Texts.localized("nav.startup"); symbol: "power" }
        SidebarRow { text: Texts.localized("nav.applications"); symbol: "square.grid.2x2" }
        SidebarSection { title: Texts.localized("sidebar.maintenance") }
        SidebarRow { text: Texts.localized("nav.tools"); symbol: "hammer" }
        SidebarSection { title: Texts.localized("sidebar.app") }
        SidebarRow { text: Texts.localized("nav.history"); symbol: "clock.arrow.circlepath" }
        SidebarRow { text: Texts.localized("nav.settings"); symbol: "gear" }
    }
}
