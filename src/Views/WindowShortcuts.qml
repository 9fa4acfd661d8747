import QtQuick

/// The keys that every window of the program knows, whatever lies over its content. A modal popup keeps keys from all
/// that stands among a window's children, so this stands in a property of the window.
QtObject {
    id: root

    signal closeRequested
    signal settingsRequested
    signal quitRequested

    readonly property list<QtObject> keys: [
        Shortcut {
            sequence: "Ctrl+W"
            onActivated: root.closeRequested()
        },
        Shortcut {
            sequence: "Ctrl+,"
            onActivated: root.settingsRequested()
        },
        Shortcut {
            sequence: "Ctrl+Q"
            onActivated: root.quitRequested()
        }
    ]
}
