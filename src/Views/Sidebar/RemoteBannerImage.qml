import QtQuick
import Quillmere

/// A picture from the network that fills its place: a spinner until it is there, a dark ground when it does not come.
Item {
    id: root

    property url source
    /// It is the still picture of a video.
    property bool isVideo: false

    readonly property bool isLoading: picture.status === Image.Loading
    /// A single pixel comes in place of one that does not.
    readonly property bool isMissing: picture.status === Image.Ready && picture.implicitWidth <= 1

    Image {
        id: picture

        anchors.fill: parent
        asynchronous: true
        cache: false
        fillMode: Image.PreserveAspectCrop
        source: String(root.source) === "" ? "" : "image://remote/" + encodeURIComponent(String(root.source))

        Accessible.ignored: true
    }

    Rectangle {
        anchors.fill: parent
        visible: root.isMissing
        color: Qt.rgba(0, 0, 0, 0.2)
    }

    Spinner {
        x: (root.width - width) / 2
        y: 30
        running: root.isLoading
        color: Theme.fillText
    }

    Symbol {
        x: (root.width - width) / 2
        y: 24
        visible: root.isVideo && !root.isLoading
        name: "play.circle.fill"
        size: 36
        color: Theme.fillText
    }
}
