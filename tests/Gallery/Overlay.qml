import QtQuick
import Quillmere

/// A screen at work.
Rectangle {
    color: Theme.canvas

    SampleSidebar {
        id: sidebar

        height: parent.height
    }

    Item {
        anchors.fill: parent
        anchors.leftMargin: sidebar.width

        ScreenHeader {
            width: parent.width
            title: Texts.localized("nav.safeCleanup")
        }

        Panel {
            anchors.fill: parent
            anchors.margins: Theme.screenMargin
            anchors.topMargin: Theme.firstCardY
        }

        ProgressOverlay {
            title: "Scanning..."
            message: "org.libreoffice.presenter-console-preview-render-cache-v4-of-the-user"
            progress: 0.62
        }
    }
}
