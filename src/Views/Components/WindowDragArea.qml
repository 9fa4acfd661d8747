import QtQuick

/// Moves the window that it lies in, as a title bar would, and maximises or restores it on a double click.
MouseArea {
    id: root

    property point from
    property bool isMoving: false

    function toggleMaximized() {
        const window = root.Window.window;
        if (window.visibility === Window.Maximized)
            window.showNormal();
        else
            window.showMaximized();
    }

    preventStealing: true

    Accessible.ignored: true

    // Not by pointer handlers, whose double tap is lost to whatever takes the press as well, such as a popup.
    onPressed: mouse => {
        from = Qt.point(mouse.x, mouse.y);
        isMoving = false;
    }
    onPositionChanged: mouse => {
        if (isMoving || Math.max(Math.abs(mouse.x - from.x), Math.abs(mouse.y - from.y)) < drag.threshold)
            return;
        isMoving = true;
        root.Window.window.startSystemMove();
    }
    onDoubleClicked: toggleMaximized()
}
