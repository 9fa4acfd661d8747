import QtQuick
import Quillmere

/// Buttons, controls, colours and type on one page.
Rectangle {
    id: root

    color: Theme.canvas

    Timer {
        interval: 200
        running: true
        onTriggered: focused.forceActiveFocus(Qt.TabFocusReason)
    }

    CardView {
        x: 24
        y: 24
        width: 516
        height: 250
        title: "Buttons"
        icon: "square.grid.2x2"

        Row {
            spacing: 16

            BoardCell { label: "normal"; ActionButton { text: "Clean"; symbol: "broom"; kind: ActionButton.Primary; size: ActionButton.Large } }
            BoardCell { label: "pressed"; ActionButton { text: "Clean"; symbol: "broom"; kind: ActionButton.Primary; size: ActionButton.Large; down: true } }
            BoardCell { label: "focused"; ActionButton { id: focused; text: "Clean"; symbol: "broom"; kind: ActionButton.Primary; size: ActionButton.Large } }
            BoardCell { label: "disabled"; ActionButton { text: "Clean"; symbol: "broom"; kind: ActionButton.Primary; size: ActionButton.Large; enabled: false } }
        }

        Row {
            y: 70
            spacing: 14

            BoardCell { label: "quiet"; ActionButton { y: 3; text: "Select All" } }
            BoardCell { label: "pressed"; ActionButton { y: 3; text: "Select All"; down: true } }
            BoardCell { label: "on"; ActionButton { y: 3; text: "Eco Traffic On"; symbol: "leaf"; kind: ActionButton.On } }
            BoardCell { label: "icons"; Row { y: 5; spacing: 6; IconButton { symbol: "globe" } IconButton { symbol: "block"; kind: IconButton.Alarming } IconButton { symbol: "clear"; kind: IconButton.Framed } } }
        }

        Row {
            y: 146
            spacing: 16

            ActionButton { text: "Erase System Drive"; kind: ActionButton.Destructive; size: ActionButton.Large }
            ActionButton { y: 4; text: "Run"; kind: ActionButton.DestructiveQuiet; size: ActionButton.Small }
            ActionButton { y: 4; text: "Run"; kind: ActionButton.Tinted; size: ActionButton.Small }
            ActionButton { y: 5; text: "Show More"; symbol: "chevron.down"; kind: ActionButton.Link }
        }
    }

    CardView {
        x: 556
        y: 24
        width: 520
        height: 250
        title: "Controls"
        icon: "sliders"

        Row {
            y: 4
            spacing: 22

            Toggle { on: true }
            Toggle {}
            Toggle { on: true; enabled: false }
            Toggle { enabled: false }
            SegmentedPicker { y: -5; model: ["System", "Light", "Dark"] }
            Spinner {}
        }

        Row {
            y: 48
            spacing: 14

            MenuPicker { model: ["Top CPU", "Top RAM"] }
            MenuPicker { model: ["Top CPU", "Top RAM"]; chosenIndex: 1; enabled: false }
            SearchField { text: "fire"; placeholderText: "Search" }
        }

        Row {
            y: 98
            spacing: 10

            RiskBadge { riskLevel: RiskLevel.Safe }
            RiskBadge { riskLevel: RiskLevel.Medium }
            RiskBadge { riskLevel: RiskLevel.High }
            RiskBadge { riskLevel: RiskLevel.Dangerous }
            RiskBadge { riskLevel: RiskLevel.Dangerous; width: 86 }
        }

        Column {
            y: 134
            spacing: 7

            DiskBar { width: 484; height: 10; value: 0.94; level: LoadLevel.High }
            DiskBar { width: 484; height: 10; value: 0.84; level: LoadLevel.Elevated }
            DiskBar { width: 484; height: 10; value: 0.68 }
            ProgressBar { width: 484; value: 0.4 }
        }
    }

    CardView {
        x: 24
        y: 290
        width: 516
        height: 386
        title: "Actions"
        icon: "bolt"

        Column {
            width: parent.width
            spacing: 12

            Row {
                spacing: 12

                HeroButton { width: 152; text: "Clean Caches"; symbol: "broom"; primary: true }
                HeroButton { width: 152; text: "Fast Boost"; symbol: "bolt" }
                HeroButton { width: 152; text: "Detailed Cleanup"; symbol: "sliders" }
            }

            Row {
                spacing: 12

                QuickActionCard { width: 152; title: "Safe Cleanup"; symbol: "checkmark.shield"; color: Theme.green }
                QuickActionCard { width: 152; title: "Large Files"; symbol: "doc.text.magnifyingglass"; color: Theme.blue }
                QuickActionCard { width: 152; title: "Keep Awake: a rather long label"; symbol: "cup.and.saucer"; color: Theme.teal }
            }

            WarningBanner {
                width: parent.width
                title: "Professional Cleanup Mode"
                message: "Clearing developer databases, mail copies, or system folders may require full rebuilds or elevated authorization."
            }

            TextEntry {
                width: 300
                label: "Type ERASE"
                text: "ERAS"
            }
        }
    }

    CardView {
        x: 556
        y: 290
        width: 520
        height: 386
        title: "Colour and type"
        icon: "layers"

        Grid {
            columns: 6
            spacing: 10

            Repeater {
                model: [Theme.canvas, Theme.sidebarBottom, Theme.card, Theme.hover, Theme.accent, Theme.accentSoft,
                        Theme.green, Theme.orange, Theme.red, Theme.purple, Theme.blue, Theme.teal]

                Rectangle {
                    required property color modelData

                    width: 72
                    height: 40
                    radius: 10
                    color: modelData
                    border.width: 1
                    border.color: Theme.cardBorder
                }
            }
        }

        Column {
            y: 110
            spacing: 6

            TitleText { text: "Overview" }
            Row {
                spacing: 10

                Figure { text: "348.27 GB"; size: 22; weight: Font.Bold }
                Figure { y: 3; text: "163.84 GB"; size: 18; weight: Font.DemiBold }
                Figure { y: 6; text: "12.8%"; size: 14; weight: Font.DemiBold }
            }
            Figure { text: "111.11 GB"; size: 18; weight: Font.DemiBold }
            HeadingText { text: "System Health" }
            BodyText { text: "Application caches in your user folder" }
            CaptionText { text: "Installed only — not selected for cleanup" }
            SectionText { text: "Maintenance" }
        }

        Ripple {
            x: 350
            y: 130
            dropSize: 54
            symbol: "checkmark.shield"
        }
    }
}
