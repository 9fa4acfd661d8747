import QtQuick
import Quillmere

/// The edge between the sidebar and the screen: dragged, or moved by the arrow keys, it gives the sidebar its width.
Item {
    id: root

    /// Of the sidebar, in pixels. A double click gives the ideal one back.
    property real sidebarWidth: ideal

    readonly property int smallest: 200
    readonly property int ideal: 220
    readonly property int largest: 280
    readonly property int step: 10

    function widen(pixels: real) {
        sidebarWidth = Math.max(smallest, Math.min(largest, sidebarWidth + pixels));
    }

    x: sidebarWidth - width / 2
    width: 8
    activeFocusOnTab: true

    Accessible.role: Accessible.Grip
    Accessible.name: Texts.localized("control.sidebarWidth")
    Accessible.focusable: true

    Keys.onLeftPressed: widen(-step)
    Keys.onRightPressed: widen(step)

    Rectangle {
        anchors.centerIn: parent
        width: 2
        height: parent.height
        visible: root.activeFocus
        color: Theme.focusRing
    }

    MouseArea {
        anchors.fill: parent
        cursorShape: Qt.SplitHCursor
        preventStealing: true

        onPositionChanged: mouse => root.widen(mouse.x - width / 2)
        onDoubleClicked: root.sidebarWidth = root.ideal
    }
}
