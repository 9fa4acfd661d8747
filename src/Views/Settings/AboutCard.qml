import QtQuick
import Quillmere

/// Which program this is, who makes it, and what it does not do.
CardView {
    id: root

    required property SettingsViewModel viewModel

    readonly property real room: width - 2 * Theme.cardPadding

    icon: "info.circle"
    title: Texts.localized("settings.about")

    Column {
        width: root.room
        spacing: 10

        BodyText {
            width: parent.width
            text: root.viewModel.nameAndVersion
            size: 15
            weight: Font.DemiBold
        }

        AboutRow {
            width: parent.width
            label: Texts.localized("about.developedBy")
            value: root.viewModel.makerName
        }

        AboutRow {
            width: parent.width
            label: Texts.localized("about.location")
            value: root.viewModel.makerLocation
        }

        AboutRow {
            width: parent.width
            label: Texts.localized("about.leadDeveloper")
            value: root.viewModel.leadDeveloper
        }

        LinkText {
            text: root.viewModel.makerPage
            textSize: 13

            onClicked: root.viewModel.openMakerPage()
        }

        CaptionText {
            width: parent.width
            text: Texts.localized("about.privacyNote")
            wrapMode: Text.Wrap
        }
    }
}
