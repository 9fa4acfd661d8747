import QtQuick
import Quillmere

/// The main window with a cleanup screen.
Rectangle {
    color: Theme.canvas

    SampleSidebar {
        id: sidebar

        height: parent.height
    }

    SampleList {
        id: list

        anchors.fill: parent
        anchors.leftMargin: sidebar.width
    }

    Timer {
        interval: 200
        running: true
        onTriggered: list.focusedRow.forceActiveFocus(Qt.TabFocusReason)
    }
}
