import QtQuick
import Quillmere

/// The wizard's first step: the language, and the drivers for disks.
Column {
    id: root

    required property WelcomeViewModel viewModel
    required property WelcomeText texts

    spacing: 12

    SheetTitleText {
        width: root.width
        size: 22
        text: root.texts.of("welcome.title")
    }

    BodyText {
        width: root.width
        bottomPadding: 8
        text: root.texts.of("welcome.text")
        color: Theme.textSecondary
        lineHeight: 20
        lineHeightMode: Text.FixedHeight
        wrapMode: Text.Wrap
    }

    CaptionText {
        text: root.texts.of("welcome.language")
        weight: Font.DemiBold
    }

    SegmentedPicker {
        width: root.width
        height: 36
        accessibleName: root.texts.of("welcome.language")
        model: root.viewModel.languages
        currentIndex: root.viewModel.languageIndex

        onPicked: index => root.viewModel.selectLanguage(index)
    }

    Item {
        width: root.width
        height: 9

        Divider {
            y: 4
            width: parent.width
        }
    }

    DriverRow {
        width: root.width
        fills: true
        drivers: root.viewModel.drivers
        installText: root.texts.of("drivers.install")
        installedText: root.texts.of("drivers.installed")
    }
}
