import QtQuick
import Quillmere

/// What is known of the chosen volume.
Rectangle {
    id: root

    property volumeDetails details

    implicitHeight: rows.implicitHeight + 22
    radius: Theme.rowRadius + 2
    color: Theme.inset

    Column {
        id: rows

        x: 16
        y: 11
        width: parent.width - 32

        VolumeDetailRow {
            width: parent.width
            label: Texts.localized("disk.volumeName")
            value: root.details.name
        }

        VolumeDetailRow {
            width: parent.width
            label: Texts.localized("disk.mountPath")
            value: root.details.mountPath
        }

        VolumeDetailRow {
            width: parent.width
            label: Texts.localized("disk.bsdDevice")
            value: root.details.device
        }

        VolumeDetailRow {
            width: parent.width
            label: Texts.localized("disk.filesystem")
            value: root.details.filesystem
        }

        VolumeDetailRow {
            width: parent.width
            label: Texts.localized("disk.totalCapacity")
            value: root.details.totalCapacity
        }

        VolumeDetailRow {
            width: parent.width
            label: Texts.localized("disk.driveType")
            value: Texts.localized(root.details.isInternal ? "disk.internal" : "disk.external")
            color: root.details.isInternal ? Theme.orangeText : Theme.text
            symbol: root.details.isInternal ? "exclamationmark.triangle" : ""
        }
    }
}
