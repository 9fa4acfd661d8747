#pragma once

#include <QMetaType>
#include <QString>
#include <QUrl>

#include <optional>

namespace Quillmere {

namespace AdvertisementMediaKinds {
Q_NAMESPACE

/// What stands behind the text of a promotion. None is the program's own drawing.
enum class AdvertisementMediaKind { Image, Movie, Youtube, None };
Q_ENUM_NS(AdvertisementMediaKind)
} // namespace AdvertisementMediaKinds

using AdvertisementMediaKinds::AdvertisementMediaKind;

/// One promotion.
struct Advertisement
{
    static constexpr double shortestDuration = 5;
    static constexpr double usualDuration = 30;
    static constexpr double longestDuration = 600;

    QString title;
    QString subtitle; ///< May be empty.
    std::optional<QUrl> mediaURL; ///< Of a picture, a movie, or the page of a video.
    AdvertisementMediaKind mediaKind = AdvertisementMediaKind::None;
    double duration = usualDuration; ///< Seconds on screen.
    QUrl clickURL; ///< Opened on a click.
    bool isFallback = false; ///< The program's own, which stands in for a feed.

    bool operator==(const Advertisement &) const = default;
};

} // namespace Quillmere
