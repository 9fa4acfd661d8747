pragma ComponentBehavior: Bound

import QtQuick
import Quillmere

/// The program's one main window. It draws its own title bar: the top edge of the content drags it.
Window {
    id: root

    required property AppState appState
    required property ViewModelFactory viewModels
    property alias showingWelcome: content.showingWelcome

    readonly property WindowShortcuts shortcuts: WindowShortcuts {
        onCloseRequested: root.close()
        onSettingsRequested: root.settingsRequested()
        onQuitRequested: root.quitRequested()
    }

    signal settingsRequested
    signal quitRequested

    width: 1100
    height: 700
    minimumWidth: 900
    minimumHeight: 600
    title: "Quillmere"
    color: Theme.canvas
    flags: Qt.Window | Qt.FramelessWindowHint

    ContentView {
        id: content

        anchors.fill: parent
        appState: root.appState
        viewModels: root.viewModels
    }

    WindowFrame {
        anchors.fill: parent
    }

    Repeater {
        model: 9

        Item {
            id: destination

            required property int index

            Shortcut {
                sequence: "Ctrl+" + (destination.index + 1)
                enabled: !content.isModal
                onActivated: root.appState.selectedTab = destination.index
            }
        }
    }

    Shortcut {
        sequence: "F5"
        enabled: !content.isModal
        onActivated: content.refresh()
    }
}
