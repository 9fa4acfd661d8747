import QtQuick
import Quillmere

/// The smallest window, with a staged confirmation above it.
Rectangle {
    color: Theme.canvas

    SampleSidebar {
        id: sidebar

        height: parent.height
        clip: true
    }

    SampleList {
        anchors.fill: parent
        anchors.leftMargin: sidebar.width
    }
}
