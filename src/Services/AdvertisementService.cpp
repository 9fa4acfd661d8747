#include "Services/AdvertisementService.h"

#include "Services/AdvertisementParsing.h"
#include "Utilities/BackgroundWork.h"
#include "Utilities/LocalizationManager.h"
#include "Utilities/LocalizationTable.h"
#include "Utilities/PromotionalHost.h"

#include <QStringList>
#include <QUrlQuery>

#include <chrono>

namespace Quillmere {

namespace {

constexpr std::chrono::milliseconds feedTimeout{8'000};
// A feed is a few lines; what is longer than this is none.
constexpr qint64 longestFeed = 512 * 1024;

bool isLanguageCode(const QString &segment)
{
    return segment == u"en" || segment == u"es" || segment == u"ru";
}

QString codeOf(Language language)
{
    return language == Language::System ? rawValue(Language::English) : rawValue(language);
}

/// Any thread.
QList<Advertisement> advertisementsIn(const Result<UrlResponse> &response, Language language)
{
    const bool isFeed = response && response.value().status >= 200 && response.value().status <= 299;
    const QList<Advertisement> parsed
        = isFeed ? parseAdvertisements(response.value().body, language) : QList<Advertisement>();
    return parsed.isEmpty() ? QList{AdvertisementService::fallback(language)} : parsed;
}

QSet<QUrl> mediaOf(const QList<Advertisement> &advertisements)
{
    QSet<QUrl> addresses;
    for (const Advertisement &each : advertisements) {
        if (const std::optional<QUrl> shown = AdvertisementService::shownMedia(each))
            addresses.insert(*shown);
    }
    return addresses;
}

} // namespace

AdvertisementService::AdvertisementService(std::shared_ptr<UrlSession> session)
    : m_session(std::move(session))
    , m_media(std::make_shared<PromotionMedia>(m_session))
{
}

QUrl AdvertisementService::endpoint()
{
    return QUrl(u"https://"_qs + promotionalHost() + u"/advapi/adv.json"_qs);
}

QFuture<QList<Advertisement>> AdvertisementService::loadAdvertisements(std::stop_token stop)
{
    UrlRequest request;
    request.url = endpoint();
    request.timeout = feedTimeout;
    request.deadline = feedTimeout;
    request.mostBytes = longestFeed;
    request.ignoresCache = true;
    const Language language = Localizer::shared().effectiveLanguage();
    return m_session->data(request, std::move(stop))
        .then(&backgroundPool(),
              [language](const Result<UrlResponse> &response) { return advertisementsIn(response, language); });
}

void AdvertisementService::beginRound(const QList<Advertisement> &round) const
{
    m_media->keepOnly(mediaOf(round));
}

QList<Advertisement> AdvertisementService::parseAdvertisements(const QByteArray &data)
{
    return Quillmere::parseAdvertisements(data, Localizer::shared().effectiveLanguage());
}

Advertisement AdvertisementService::fallback(Language language)
{
    const QString code = codeOf(language);
    const auto text = [&](const QString &key) {
        return LocalizationTable::controls().textOrEnglish(key, code).value_or(QString());
    };
    Advertisement made;
    made.title = text(u"promotion.name"_qs);
    made.subtitle = text(u"promotion.text"_qs);
    made.clickURL = QUrl(u"https://"_qs + promotionalHost() + u'/' + code + u'/');
    made.isFallback = true;
    return made;
}

QUrl AdvertisementService::localizedAdURL(const QUrl &url, Language language)
{
    if (!url.toString(QUrl::FullyEncoded).contains(promotionalHost()))
        return url;
    const QString code = codeOf(language);
    QString path = url.path(QUrl::FullyEncoded);
    if (!path.startsWith(u'/'))
        path.prepend(u'/');
    QStringList segments = path.mid(1).split(u'/');
    if (path == u"/")
        segments = {code, {}};
    else if (isLanguageCode(segments.first()))
        segments.first() = code;
    else
        segments.prepend(code);
    QUrl localized = url;
    localized.setPath(u'/' + segments.join(u'/'), QUrl::TolerantMode);
    return localized.isValid() ? localized : url;
}

std::optional<QUrl> AdvertisementService::thumbnailURL(const QUrl &url)
{
    QString id;
    if (url.host().contains(u"youtu.be"))
        id = url.path().section(u'/', 1, 1);
    else if (url.host().contains(u"youtube"))
        id = QUrlQuery(url).queryItemValue(u"v"_qs, QUrl::FullyDecoded);
    if (id.isEmpty())
        return std::nullopt;
    return QUrl(u"https://img.youtube.com/vi/"_qs + QString::fromLatin1(QUrl::toPercentEncoding(id))
                + u"/hqdefault.jpg"_qs);
}

std::optional<QUrl> AdvertisementService::shownMedia(const Advertisement &advertisement)
{
    if (advertisement.mediaURL && advertisement.mediaKind == AdvertisementMediaKind::Youtube)
        return thumbnailURL(*advertisement.mediaURL);
    return advertisement.mediaURL;
}

} // namespace Quillmere
