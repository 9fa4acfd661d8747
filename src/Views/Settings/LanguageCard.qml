import QtQuick
import Quillmere

/// The language of the program, and under it the drivers for disks.
CardView {
    id: root

    required property SettingsViewModel viewModel

    icon: "globe"
    title: Texts.localized("settings.language")

    Column {
        width: root.width - 2 * Theme.cardPadding
        spacing: 14

        MenuPicker {
            width: Math.max(220, implicitWidth)
            accessibleName: Texts.localized("settings.language")
            model: root.viewModel.languages
            chosenIndex: root.viewModel.languageIndex

            onActivated: index => root.viewModel.languageIndex = index
        }

        Divider {
            width: parent.width
        }

        DriverRow {
            width: parent.width
            drivers: root.viewModel.drivers
            installText: Texts.localized("drivers.install")
            installedText: Texts.localized("drivers.installed")
        }
    }
}
