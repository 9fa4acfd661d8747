import QtQuick
import Quillmere

/// A movie that fills its place, without sound, again and again. Until its first picture a sign of a movie stands for
/// it, and for good where none comes: where nothing but the processor draws, no renderer shows frames.
Item {
    id: root

    required property url url
    required property AdvertisementMovie download
    property bool isWatched: true

    readonly property bool canPlay: GraphicsInfo.api !== GraphicsInfo.Software
                                    && GraphicsInfo.api !== GraphicsInfo.Unknown
    readonly property bool isReady: canPlay && String(download.source) !== ""

    function fetch() {
        if (canPlay)
            download.fetch(url);
    }

    onUrlChanged: fetch()
    onCanPlayChanged: fetch()

    Symbol {
        x: (root.width - width) / 2
        y: 24
        visible: !(player.item?.hasPicture ?? false)
        name: "film"
        size: 36
        color: Theme.tint(Theme.fillText, 0.8)
    }

    // What plays movies is loaded with the first of them.
    Loader {
        id: player

        anchors.fill: parent
        source: root.isReady ? "MoviePlayer.qml" : ""

        Binding {
            target: player.item
            property: "source"
            value: root.download.source
            when: player.item !== null
        }

        Binding {
            target: player.item
            property: "isWatched"
            value: root.isWatched
            when: player.item !== null
        }
    }
}
