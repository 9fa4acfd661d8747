import QtQuick
import Quillmere

/// The separate Settings window. Its title is the same in every language: the program tells windows apart by it.
Window {
    id: root

    signal quitRequested

    width: 720
    height: 560
    minimumWidth: 560
    minimumHeight: 420
    title: "Settings"
    color: Theme.canvas
    flags: Qt.Window | Qt.FramelessWindowHint

    FocusScope {
        anchors.fill: parent
        focus: true

        ScreenHeader {
            width: parent.width
            title: Texts.localized("nav.settings")
        }

        Panel {
            x: Theme.screenMargin
            y: Theme.firstCardY
            width: parent.width - 2 * Theme.screenMargin
            height: parent.height - y - Theme.screenMargin

            EmptyState {
                anchors.fill: parent
                symbol: "gear"
                sentence: Texts.localized("control.nothingHere")
            }
        }

        WindowButtons {
            anchors.right: parent.right
            anchors.rightMargin: 10
            y: 12
        }
    }

    WindowFrame {
        anchors.fill: parent
    }

    WindowShortcuts {
        onCloseRequested: root.close()
        onQuitRequested: root.quitRequested()
    }
}
