import QtQuick
import Quillmere

/// The choices of the erase sheet: the volume, with what is known of it, and the mode.
Column {
    id: root

    required property DiskUtilityState utility

    spacing: 8

    BodyText {
        text: Texts.localized("disk.selectTarget")
        weight: Font.DemiBold

        Accessible.role: Accessible.Heading
    }

    FormRow {
        width: parent.width
        label: Texts.localized("disk.drive")

        MenuPicker {
            width: parent.width
            accessibleName: Texts.localized("disk.drive")
            model: root.utility.volumeTexts
            chosenIndex: root.utility.selectedRow
            displayText: root.utility.selectedText

            onActivated: index => root.utility.selectRow(index)
        }
    }

    BodyText {
        topPadding: 8
        visible: root.utility.hasSelection
        text: Texts.localized("disk.information")
        weight: Font.DemiBold

        Accessible.role: Accessible.Heading
    }

    VolumeDetailsBox {
        width: parent.width
        visible: root.utility.hasSelection
        details: root.utility.details
    }

    BodyText {
        topPadding: 8
        text: Texts.localized("disk.operationMode")
        weight: Font.DemiBold

        Accessible.role: Accessible.Heading
    }

    FormRow {
        width: parent.width
        label: Texts.localized("disk.formatMode")
        isWide: true

        SegmentedPicker {
            width: parent.width
            accessibleName: Texts.localized("disk.formatMode")
            wraps: true
            model: [Texts.localized("disk.quick"), Texts.localized("disk.secure")]
            currentIndex: root.utility.selectedMode

            onPicked: index => root.utility.selectedMode = index
        }
    }
}
