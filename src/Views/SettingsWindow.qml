import QtQuick
import Quillmere

/// The separate Settings window. Its title is the same in every language: the program tells windows apart by it.
Window {
    id: root

    required property AppState appState
    required property ViewModelFactory viewModels

    readonly property Destination current: screen.item as Destination
    readonly property WindowShortcuts shortcuts: WindowShortcuts {
        onCloseRequested: root.close()
        onQuitRequested: root.quitRequested()
    }

    signal quitRequested

    width: 720
    height: 560
    minimumWidth: 560
    minimumHeight: 420
    title: "Settings"
    color: Theme.canvas
    flags: Qt.Window | Qt.FramelessWindowHint

    // Made anew whenever the window is opened, and looks then at the machine anew.
    onVisibleChanged: {
        if (visible)
            screen.setSource("Settings/SettingsView.qml", {
                "appState": appState,
                "viewModels": viewModels
            });
        else
            screen.source = "";
    }

    FocusScope {
        anchors.fill: parent
        focus: true

        Loader {
            id: screen

            anchors.fill: parent
            focus: true
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

    Shortcut {
        sequence: "F5"
        enabled: root.current !== null && !root.current.isModal
        onActivated: root.current.refreshRequested()
    }
}
