import QtQuick
import Quillmere

/// What stands beside the program's icon in the menu bar.
CardView {
    id: root

    required property SettingsViewModel viewModel

    icon: "gauge.medium"
    title: Texts.localized("settings.menuBar")

    Column {
        width: root.width - 2 * Theme.cardPadding
        spacing: 10

        LabelledRow {
            width: parent.width
            text: Texts.localized("settings.menuBar.show")

            MenuPicker {
                width: Math.max(180, implicitWidth)
                accessibleName: Texts.localized("settings.menuBar.show")
                model: Array.from(["iconOnly", "cpu", "traffic", "ram"],
                                  name => Texts.localized("settings.menuBar.mode." + name))
                chosenIndex: root.viewModel.menuBarModeIndex

                onActivated: index => root.viewModel.menuBarModeIndex = index
            }
        }

        CaptionText {
            width: parent.width
            text: Texts.localized("settings.menuBar.description")
            wrapMode: Text.Wrap
        }
    }
}
