import QtQuick
import Quillmere

/// The whole volume as a bar of its parts, and how large it is.
CardView {
    id: root

    required property SystemDataViewModel viewModel
    property alias markedRow: bar.markedRow
    readonly property alias pointedRow: bar.pointedRow

    title: Texts.localized("systemData.storageAllocation")
    icon: "internaldrive"

    StorageBar {
        id: bar

        y: 2
        width: parent.width
        items: root.viewModel.storageItems

        Accessible.name: root.title
    }

    Item {
        y: bar.y + bar.height + 16
        width: parent.width
        height: 22

        Accessible.role: Accessible.StaticText
        Accessible.name: caption.text + " " + figure.text

        BodyText {
            id: caption

            height: parent.height
            text: Texts.localized("systemData.totalCapacity")
            color: Theme.textSecondary

            Accessible.ignored: true
        }

        Figure {
            id: figure

            x: caption.width + 6
            anchors.verticalCenter: parent.verticalCenter
            text: root.viewModel.totalCapacityText
            size: 14
            weight: Font.DemiBold

            Accessible.ignored: true
        }
    }
}
