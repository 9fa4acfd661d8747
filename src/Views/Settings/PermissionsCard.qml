import QtQuick
import Quillmere

/// Whether the program may look at the whole disk, and the way to where that is granted.
CardView {
    id: root

    required property SettingsViewModel viewModel

    readonly property real room: width - 2 * Theme.cardPadding
    readonly property bool isNarrow: room < openButton.implicitWidth + 280

    icon: "lock"
    title: Texts.localized("permissions.title")

    Item {
        width: root.room
        height: root.isNarrow ? words.height + 12 + answer.height : Math.max(words.height, answer.height)

        Column {
            id: words

            width: root.isNarrow ? parent.width : parent.width - answer.width - 24
            spacing: 4

            BodyText {
                width: parent.width
                text: Texts.localized("permissions.fullDiskAccess")
                weight: Font.DemiBold
                wrapMode: Text.Wrap
            }

            CaptionText {
                width: parent.width
                text: Texts.localized("permissions.fullDiskExplanation")
                wrapMode: Text.Wrap
            }
        }

        Item {
            id: answer

            x: root.isNarrow ? 0 : parent.width - width
            y: root.isNarrow ? words.height + 12 : (parent.height - height) / 2
            width: root.viewModel.hasFullDiskAccess ? granted.width : openButton.width
            height: root.viewModel.hasFullDiskAccess ? granted.height : openButton.height

            Row {
                id: granted

                visible: root.viewModel.hasFullDiskAccess
                spacing: 8

                Symbol {
                    anchors.verticalCenter: parent.verticalCenter
                    name: "checkmark.circle.fill"
                    size: 18
                    color: Theme.greenText
                }

                BodyText {
                    height: 24
                    text: Texts.localized("permissions.granted")
                    weight: Font.DemiBold
                    color: Theme.greenText
                }
            }

            ActionButton {
                id: openButton

                visible: !root.viewModel.hasFullDiskAccess
                kind: ActionButton.Primary
                text: Texts.localized("permissions.openSettings")

                onClicked: root.viewModel.openFullDiskAccessSettings()
            }
        }
    }
}
