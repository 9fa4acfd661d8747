import QtQuick
import Quillmere

/// An empty screen beside a console.
Rectangle {
    color: Theme.canvas

    SampleSidebar {
        id: sidebar

        height: parent.height
    }

    Item {
        anchors.fill: parent
        anchors.leftMargin: sidebar.width

        ScreenHeader {
            width: parent.width
            title: Texts.localized("nav.tools")
        }

        Panel {
            x: Theme.screenMargin
            y: Theme.firstCardY
            width: 396
            height: parent.height - y - 24

            EmptyState {
                anchors.fill: parent
                symbol: "checkmark.shield"
                sentence: "Find and safely remove cache files and logs."
                buttonText: "Start Scan"
            }
        }

        Console {
            x: 436
            y: Theme.firstCardY
            width: parent.width - x - 24
            height: 290
            title: "Terminal Console Output"
            output: "Starting DNS cache flush...\nDNS cache flushed.\nSUCCESS: Command completed successfully.\n"
            working: true
        }

        Console {
            x: 436
            y: Theme.firstCardY + 306
            width: parent.width - x - 24
            height: 298
            title: "Terminal Console Output"
            idleText: "Run a tool on the left to see its output."
        }
    }
}
