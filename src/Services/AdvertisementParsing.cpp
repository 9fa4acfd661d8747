#include "Services/AdvertisementParsing.h"

#include "Services/AdvertisementService.h"
#include "Utilities/JsonDocument.h"
#include "Utilities/JsonNumber.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace Quillmere {

namespace {

using Keys = std::span<const QByteArrayView>;

constexpr QByteArrayView titleKeys[] = {"title", "name", "headline"};
constexpr QByteArrayView subtitleKeys[] = {"subtitle", "description", "text", "body"};
constexpr QByteArrayView mediaKeys[] = {"media",      "media_url",  "mediaURL",  "url",      "image",   "image_url",
                                        "imageURL",   "video",      "video_url", "videoURL", "youtube", "youtube_url",
                                        "youtubeURL", "youtube_id", "youtubeId", "mov",      "mov_url", "movURL"};
constexpr QByteArrayView clickKeys[]
    = {"click", "click_url", "clickURL", "link", "target", "target_url", "targetURL", "href"};
constexpr QByteArrayView durationKeys[]
    = {"duration", "show_duration", "showDuration", "display_duration", "displayDuration", "seconds"};

constexpr qsizetype shortestVideoId = 10;
// Many times what the card has room for. Beyond that a text only costs time to lay out.
constexpr qsizetype longestText = 300;

bool isSwitchedOff(const JsonValue &object)
{
    const std::optional<JsonValue> enabled = object.member("enabled");
    return enabled && enabled->boolean() == false;
}

/// What @p value says as a text. Empty for what is neither a text nor a number.
QString textOf(const JsonValue &value)
{
    if (const std::optional<QString> string = value.string())
        return string->trimmed();
    if (const std::optional<qint64> integer = value.integer())
        return QString::number(*integer);
    if (const std::optional<double> number = value.number())
        return QString::fromLatin1(jsonFromDouble(*number));
    return {};
}

/// The first text under any of @p keys that is not empty.
QString firstText(const JsonValue &object, Keys keys)
{
    for (const QByteArrayView key : keys) {
        const std::optional<JsonValue> value = object.member(key);
        if (const QString text = value ? textOf(*value) : QString(); !text.isEmpty())
            return text;
    }
    return {};
}

QString withinRoom(const QString &text)
{
    if (text.size() <= longestText)
        return text;
    const bool cutsCharacter = text.at(longestText - 1).isHighSurrogate();
    return text.first(longestText - (cutsCharacter ? 1 : 0));
}

std::optional<double> secondsOf(const JsonValue &value)
{
    if (const std::optional<double> number = value.number())
        return number;
    bool isNumber = false;
    const double seconds = value.string().value_or(QString()).toDouble(&isNumber);
    return isNumber && !std::isnan(seconds) ? std::optional(seconds) : std::nullopt;
}

double durationOf(const JsonValue &object)
{
    for (const QByteArrayView key : durationKeys) {
        const std::optional<JsonValue> value = object.member(key);
        if (value && !value->isNull())
            return std::clamp(secondsOf(*value).value_or(Advertisement::usualDuration), Advertisement::shortestDuration,
                              Advertisement::longestDuration);
    }
    return Advertisement::usualDuration;
}

std::optional<QUrl> mediaOf(const QString &text)
{
    const QUrl url(text);
    if (url.isValid() && !url.scheme().isEmpty())
        return url;
    if (text.size() >= shortestVideoId && !text.contains(u'/'))
        return QUrl(u"https://www.youtube.com/watch?v="_qs + QString::fromLatin1(QUrl::toPercentEncoding(text)));
    return std::nullopt;
}

AdvertisementMediaKind kindOf(const QString &text, const std::optional<QUrl> &url)
{
    if (!url)
        return AdvertisementMediaKind::None;
    const QString address = url->toString(QUrl::FullyEncoded).toLower();
    const auto names
        = [&](QStringView host) { return text.contains(host, Qt::CaseInsensitive) || address.contains(host); };
    if (names(u"youtube") || names(u"youtu.be"))
        return AdvertisementMediaKind::Youtube;
    if (address.endsWith(u".mov") || address.endsWith(u".mp4") || address.endsWith(u".m4v"))
        return AdvertisementMediaKind::Movie;
    return AdvertisementMediaKind::Image;
}

std::optional<Advertisement> parseAdvertisement(const JsonValue &object, Language language)
{
    if (isSwitchedOff(object))
        return std::nullopt;
    const QUrl click(firstText(object, clickKeys));
    if (click.isEmpty() || !click.isValid())
        return std::nullopt;

    Advertisement parsed;
    parsed.title = withinRoom(firstText(object, titleKeys));
    if (parsed.title.isEmpty())
        parsed.title = u"Advertisement"_qs;
    parsed.subtitle = withinRoom(firstText(object, subtitleKeys));
    const QString media = firstText(object, mediaKeys);
    parsed.mediaURL = mediaOf(media);
    parsed.mediaKind = kindOf(media, parsed.mediaURL);
    parsed.duration = durationOf(object);
    parsed.clickURL = AdvertisementService::localizedAdURL(click, language);
    return parsed;
}

bool isObject(const JsonValue &value)
{
    return value.type() == JsonType::Object;
}

/// The elements of an array in which all are objects; nothing for anything else.
std::optional<QList<JsonValue>> objectsOf(const std::optional<JsonValue> &value)
{
    const std::optional<QList<JsonValue>> elements = value ? value->elements() : std::nullopt;
    return elements && std::ranges::all_of(*elements, isObject) ? elements : std::nullopt;
}

QList<JsonValue> itemsOf(const JsonValue &feed)
{
    if (!isObject(feed))
        return objectsOf(feed).value_or(QList<JsonValue>());
    if (isSwitchedOff(feed))
        return {};
    if (const std::optional<JsonValue> only = feed.member("ad"); only && isObject(*only))
        return {*only};
    if (const auto items = objectsOf(feed.member("ads")))
        return *items;
    if (const auto items = objectsOf(feed.member("items")))
        return *items;
    return {feed};
}

} // namespace

QList<Advertisement> parseAdvertisements(const QByteArray &data, Language language)
{
    const Result<JsonDocument> document = JsonDocument::parse(data);
    if (!document)
        return {};
    QList<Advertisement> advertisements;
    for (const JsonValue &item : itemsOf(document.value().root())) {
        if (const std::optional<Advertisement> parsed = parseAdvertisement(item, language))
            advertisements.append(*parsed);
    }
    return advertisements;
}

} // namespace Quillmere
