import QtQuick
import Quillmere

/// Light, dark, or as the desktop is.
CardView {
    id: root

    required property SettingsViewModel viewModel

    icon: "eye"
    title: Texts.localized("settings.appearance")

    LabelledRow {
        width: root.width - 2 * Theme.cardPadding
        text: Texts.localized("settings.theme")

        SegmentedPicker {
            accessibleName: Texts.localized("settings.theme")
            model: Array.from(["system", "light", "dark"], name => Texts.localized("settings.theme." + name))
            currentIndex: root.viewModel.themeIndex

            onPicked: index => root.viewModel.themeIndex = index
        }
    }
}
