pragma ComponentBehavior: Bound

import QtQuick

/// The strips along the edges of a window that has no frame of its own, by which it is resized.
Item {
    id: root

    readonly property bool isFree: Window.visibility === Window.Windowed
    readonly property int grip: 6

    component Grip: MouseArea {
        required property int edges

        enabled: root.isFree
        acceptedButtons: Qt.LeftButton
        onPressed: root.Window.window.startSystemResize(edges)
    }

    Grip {
        edges: Qt.TopEdge
        x: root.grip
        width: root.width - 2 * root.grip
        height: root.grip / 2
        cursorShape: Qt.SizeVerCursor
    }

    Grip {
        edges: Qt.BottomEdge
        x: root.grip
        y: root.height - height
        width: root.width - 2 * root.grip
        height: root.grip
        cursorShape: Qt.SizeVerCursor
    }

    Grip {
        edges: Qt.LeftEdge
        y: root.grip
        width: root.grip
        height: root.height - 2 * root.grip
        cursorShape: Qt.SizeHorCursor
    }

    Grip {
        edges: Qt.RightEdge
        x: root.width - width
        y: root.grip
        width: root.grip
        height: root.height - 2 * root.grip
        cursorShape: Qt.SizeHorCursor
    }

    Grip {
        edges: Qt.TopEdge | Qt.LeftEdge
        width: root.grip
        height: root.grip
        cursorShape: Qt.SizeFDiagCursor
    }

    Grip {
        edges: Qt.TopEdge | Qt.RightEdge
        x: root.width - width
        width: root.grip
        height: root.grip
        cursorShape: Qt.SizeBDiagCursor
    }

    Grip {
        edges: Qt.BottomEdge | Qt.LeftEdge
        y: root.height - height
        width: root.grip
        height: root.grip
        cursorShape: Qt.SizeBDiagCursor
    }

    Grip {
        edges: Qt.BottomEdge | Qt.RightEdge
        x: root.width - width
        y: root.height - height
        width: root.grip
        height: root.grip
        cursorShape: Qt.SizeFDiagCursor
    }
}
