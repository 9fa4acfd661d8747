import QtQuick
import Quillmere

/// Which disk is erased, and how. The confirmations stand in DiskEraseAlert, above this sheet.
Sheet {
    id: root

    required property DiskUtilityState utility
    /// What is under way while the disk is erased.
    property string runningText

    readonly property bool isErasing: utility.alert === DiskAlert.Running

    title: Texts.localized("disk.utilityTitle")

    onAboutToShow: utility.reset()
    // Not before it stands: the volumes keep the whole program waiting.
    onOpened: utility.appear()

    EmptyState {
        width: parent.width
        height: visible ? 360 : 0
        visible: root.utility.isLoading
        symbol: "internaldrive"
        sentence: Texts.localized("disk.loading")
        working: true
    }

    DiskUtilityForm {
        width: parent.width
        height: visible ? implicitHeight : 0
        visible: !root.utility.isLoading
        enabled: !root.isErasing
        utility: root.utility
    }

    footer: [
        Row {
            anchors.verticalCenter: parent.verticalCenter
            spacing: 10
            visible: root.utility.isSecureBlocked

            Symbol {
                id: lock

                anchors.verticalCenter: parent.verticalCenter
                name: "lock"
                size: 18
                color: Theme.orangeText
            }

            CaptionText {
                anchors.verticalCenter: parent.verticalCenter
                width: root.surfaceWidth - 2 * root.contentMargin - runButton.width - lock.width - 24
                text: Texts.localized("disk.secureBlocked")
                color: Theme.orangeText
                wrapMode: Text.Wrap

                Accessible.role: Accessible.AlertMessage
            }
        },
        Row {
            anchors.verticalCenter: parent.verticalCenter
            rightPadding: 8
            spacing: 10
            visible: root.isErasing

            Accessible.role: Accessible.ProgressBar
            Accessible.name: root.runningText

            Spinner {
                anchors.verticalCenter: parent.verticalCenter
                running: root.isErasing
            }

            ElidingText {
                anchors.verticalCenter: parent.verticalCenter
                width: Math.min(implicitWidth, root.surfaceWidth - runButton.width - 110)
                text: root.runningText
                color: Theme.textSecondary
                elide: Text.ElideMiddle

                Accessible.ignored: true
            }
        },
        ActionButton {
            id: runButton

            visible: !root.utility.isLoading
            enabled: !root.utility.isSecureBlocked && !root.isErasing
            kind: ActionButton.Destructive
            size: ActionButton.Large
            text: Texts.localized(root.utility.selectedMode === EraseMode.Secure ? "disk.runSecure" : "disk.runQuick")

            onClicked: root.utility.run()
        }
    ]
}
