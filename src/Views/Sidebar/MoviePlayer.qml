import QtQuick
import QtMultimedia

/// Plays a local file over and over while somebody can see it, without sound and without controls.
VideoOutput {
    id: root

    property url source
    property bool isWatched: true

    /// There is a picture of it. None ever comes of what is no movie after all, or none that anything here can play.
    readonly property bool hasPicture: sourceRect.width > 0 && player.error === MediaPlayer.NoError

    function play() {
        if (String(source) === "")
            return;
        if (isWatched)
            player.play();
        else
            player.pause();
    }

    fillMode: VideoOutput.PreserveAspectCrop

    onIsWatchedChanged: play()

    MediaPlayer {
        id: player

        // No audio output is given to it, so it makes no sound.
        source: root.source
        videoOutput: root

        onSourceChanged: root.play()
        // Asked for loops, this player stops after the first all the same.
        onMediaStatusChanged: {
            if (mediaStatus === MediaPlayer.EndOfMedia)
                Qt.callLater(root.play); // qmllint disable type
        }
    }
}
