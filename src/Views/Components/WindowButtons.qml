import QtQuick
import Quillmere

/// Minimise, maximise or restore, and close, for a window without a title bar of its own. To stand at the right end of
/// its top 52 pixels.
Row {
    id: root

    property color color: Theme.textTertiary
    property color ringColor: Theme.focusRing

    readonly property bool maximized: Window.visibility === Window.Maximized

    spacing: 4

    Accessible.role: Accessible.ToolBar
    Accessible.name: Texts.localized("control.window")

    IconButton {
        side: 28
        symbolSize: 16
        symbol: "window.minimize"
        color: root.color
        ringColor: root.ringColor
        accessibleName: Texts.localized("control.minimize")

        onClicked: root.Window.window.showMinimized()
    }

    IconButton {
        side: 28
        symbolSize: 16
        symbol: root.maximized ? "window.restore" : "window.maximize"
        color: root.color
        ringColor: root.ringColor
        accessibleName: Texts.localized(root.maximized ? "control.restore" : "control.maximize")

        onClicked: {
            if (root.maximized)
                root.Window.window.showNormal();
            else
                root.Window.window.showMaximized();
        }
    }

    IconButton {
        side: 28
        symbolSize: 16
        symbol: "window.close"
        color: root.color
        ringColor: root.ringColor
        accessibleName: Texts.localized("control.close")

        onClicked: root.Window.window.close()
    }
}
