#pragma once

#include "Models/Advertisement.h"
#include "Models/Language.h"
#include "Platform/UrlSession.h"
#include "Services/PromotionMedia.h"
#include "Values/SharedInstance.h"

#include <QFuture>
#include <QList>

namespace Quillmere {

/// Reads the feed of promotions. Whatever goes wrong with it, the program's own promotion stands in, and nobody is
/// told. GUI thread only.
class AdvertisementService
{
public:
    explicit AdvertisementService(std::shared_ptr<UrlSession> session);

    [[nodiscard]] static AdvertisementService &shared() { return SharedInstance<AdvertisementService>::get(); }
    /// Where the feed is.
    [[nodiscard]] static QUrl endpoint();

    /// Where the pictures and movies of the promotions come from.
    [[nodiscard]] std::shared_ptr<UrlSession> media() const { return m_media; }
    /// Lets go of what is kept of them but for @p round, which is shown from now on.
    void beginRound(const QList<Advertisement> &round) const;
    /// Lets go of all of them, for a time in which nobody looks.
    void forgetMedia() const { beginRound({}); }
    /// Never empty. Once @p stop is requested it ends early. The feed is read on a worker thread.
    [[nodiscard]] QFuture<QList<Advertisement>> loadAdvertisements(std::stop_token stop);
    /// The promotions of a feed, in its order; empty for what is none.
    [[nodiscard]] static QList<Advertisement> parseAdvertisements(const QByteArray &data);

    /// The program's own promotion in @p language; in English where that is none of its three.
    [[nodiscard]] static Advertisement fallback(Language language);
    /// @p url in @p language where it names the promotional host, whose pages lie under a language each; any other as
    /// it stands.
    [[nodiscard]] static QUrl localizedAdURL(const QUrl &url, Language language);
    /// The still picture of the video behind @p url, the page of a video. Nothing where no video can be told from it.
    [[nodiscard]] static std::optional<QUrl> thumbnailURL(const QUrl &url);
    /// What is shown of @p advertisement: its picture, its movie, or the still picture of its video. Nothing where it
    /// has none of them.
    [[nodiscard]] static std::optional<QUrl> shownMedia(const Advertisement &advertisement);

private:
    std::shared_ptr<UrlSession> m_session;
    std::shared_ptr<PromotionMedia> m_media;
};

} // namespace Quillmere
