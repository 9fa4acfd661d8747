import QtQuick
import Quillmere

/// Offers the disk drivers, or says that they are there. Under it, what the installation says of itself.
Column {
    id: root

    required property DriversViewModel drivers
    property string installText
    property string installedText
    /// The button takes the whole width.
    property bool fills: false

    spacing: 8

    Item {
        width: root.width
        height: Math.max(36, installedLabel.implicitHeight)
        visible: root.drivers.areDriversInstalled

        Symbol {
            id: mark

            anchors.verticalCenter: parent.verticalCenter
            name: "checkmark.shield.fill"
            size: 20
            color: Theme.greenText
        }

        BodyText {
            id: installedLabel

            x: mark.width + 10
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width - x
            text: root.installedText
            wrapMode: Text.Wrap
        }
    }

    Row {
        visible: !root.drivers.areDriversInstalled
        spacing: 12

        ActionButton {
            width: root.fills ? root.width - (spinner.visible ? spinner.width + parent.spacing : 0)
                              : Math.min(implicitWidth, root.width - spinner.width - parent.spacing)
            enabled: !root.drivers.isInstallingDrivers
            symbol: "arrow.down.circle"
            text: root.installText

            onClicked: root.drivers.install()
        }

        Spinner {
            id: spinner

            anchors.verticalCenter: parent.verticalCenter
            running: root.drivers.isInstallingDrivers
        }
    }

    CaptionText {
        width: root.width
        visible: text !== ""
        text: root.drivers.driverInstallStatus
        wrapMode: Text.Wrap
    }
}
