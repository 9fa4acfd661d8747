import QtQuick
import Quillmere

/// A sheet and an alert above it.
Rectangle {
    color: Theme.canvas

    SampleSidebar {
        id: sidebar

        height: parent.height
    }

    SampleList {
        anchors.fill: parent
        anchors.leftMargin: sidebar.width
    }

    Sheet {
        visible: true
        title: "Disk Erase and Format Utility"

        Column {
            width: parent.width
            spacing: 14

            BodyText { text: "Select Target Drive"; weight: Font.DemiBold }
            MenuPicker { width: parent.width; model: ["Macintosh HD (System) (disk1s1s1) - 512.11 GB"] }
            SegmentedPicker { width: parent.width; model: ["Quick Format Standard", "Full Cleanup with Secure Overwrite"] }
            Rectangle { width: parent.width; height: 240; radius: 12; color: Theme.inset }
        }

        footer: ActionButton {
            text: "Run Quick Format"
            kind: ActionButton.Destructive
            size: ActionButton.Large
        }
    }

    Timer {
        id: later

        interval: 250
        running: true
    }

    AlertDialog {
        visible: !later.running
        destructive: true
        title: "Critical Confirmation Step 3 of 3"
        message: "Final confirmation. Type ERASE below to erase the internal system drive."
        stepCount: 3
        step: 3
        cancelText: "Cancel"
        confirmText: "Erase System Drive"
        initialFocus: entry

        TextEntry {
            id: entry

            width: parent.width
            label: "Type ERASE"
            text: "ERAS"
        }
    }
}
