import QtQuick

/// Moves the window that it lies in, as a title bar would, and maximises or restores it on a double click.
Item {
    id: root

    function toggleMaximized() {
        const window = root.Window.window;
        if (window.visibility === Window.Maximized)
            window.showNormal();
        else
            window.showMaximized();
    }

    Accessible.ignored: true

    DragHandler {
        target: null
        grabPermissions: PointerHandler.TakeOverForbidden
        onActiveChanged: {
            if (active)
                root.Window.window.startSystemMove();
        }
    }

    TapHandler {
        gesturePolicy: TapHandler.DragThreshold
        onDoubleTapped: root.toggleMaximized()
    }
}
