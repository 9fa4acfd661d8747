import QtQuick

/// The keys that every window of the program knows.
Item {
    id: root

    signal closeRequested
    signal settingsRequested
    signal quitRequested

    Shortcut {
        sequences: ["Ctrl+W"]
        onActivated: root.closeRequested()
    }

    Shortcut {
        sequences: ["Ctrl+,"]
        onActivated: root.settingsRequested()
    }

    Shortcut {
        sequences: ["Ctrl+Q"]
        onActivated: root.quitRequested()
    }
}
