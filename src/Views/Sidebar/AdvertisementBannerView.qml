import QtQuick
import Quillmere

/// The promotion's place in the sidebar, with its margins. It turns to the next one only while somebody can see it.
Item {
    id: root

    required property ViewModelFactory viewModels

    readonly property AdvertisementBannerViewModel viewModel: viewModels.makeAdvertisementBanner(root)
    readonly property bool isWatched: Window.visibility !== Window.Hidden && Window.visibility !== Window.Minimized
    readonly property bool isVideo: viewModel.layer === AdvertisementBannerViewModel.Video

    function watch() {
        if (isWatched)
            viewModel.start();
        else
            viewModel.stop();
    }

    function mediaOf(layer: int): Component {
        switch (layer) {
        case AdvertisementBannerViewModel.Picture:
        case AdvertisementBannerViewModel.Video:
            return picture;
        case AdvertisementBannerViewModel.Movie:
            return movie;
        default:
            return null;
        }
    }

    implicitHeight: card.height + 12

    onIsWatchedChanged: watch()

    PromotionCard {
        id: card

        x: 10
        y: 6
        width: root.width - 20
        name: root.viewModel.title
        message: root.viewModel.subtitle
        help: Texts.localized("advertisement.help")
        symbol: root.isVideo ? "play.rectangle.fill" : ""
        media: root.mediaOf(root.viewModel.layer)

        onClicked: root.viewModel.open()
    }

    Component {
        id: picture

        RemoteBannerImage {
            source: root.viewModel.media // qmllint disable unqualified
            isVideo: root.isVideo // qmllint disable unqualified
        }
    }

    Component {
        id: movie

        MovieBannerView {
            id: movieView

            url: root.viewModel.media // qmllint disable unqualified
            isWatched: root.isWatched // qmllint disable unqualified
            download: root.viewModels.makeAdvertisementMovie(movieView) // qmllint disable unqualified
        }
    }
}
