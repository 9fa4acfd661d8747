#include "Fakes/InstalledLocalizer.h"
#include "Services/AdvertisementParsing.h"
#include "Services/AdvertisementService.h"

#include <gmock/gmock.h>

using namespace Quillmere;

namespace {

constexpr const char *click = R"("link": "https://other.test/offer")";

QList<Advertisement> parsed(const QByteArray &feed)
{
    return parseAdvertisements(feed, Language::English);
}

/// The one item of a feed that says @p members beside where a click leads.
Advertisement item(const QByteArray &members)
{
    const QList<Advertisement> all = parsed(QByteArray("{") + members + (members.isEmpty() ? "" : ", ") + click + "}");
    EXPECT_EQ(all.size(), 1) << members.constData();
    return all.value(0);
}

QStringList titles(const QByteArray &feed)
{
    QStringList found;
    for (const Advertisement &each : parsed(feed))
        found.append(each.title);
    return found;
}

QByteArray named(const char *title)
{
    return QByteArray(R"({"title": ")") + title + R"(", )" + click + "}";
}

} // namespace

TEST(AdvertisementFeedTest, AnArrayOfObjectsIsTheListInItsOrder)
{
    EXPECT_EQ(titles("[" + named("One") + ", " + named("Two") + "]"), QStringList({u"One"_qs, u"Two"_qs}));
}

TEST(AdvertisementFeedTest, AnArrayThatHoldsAnythingElseIsNone)
{
    EXPECT_TRUE(parsed("[" + named("One") + ", 7]").isEmpty());
    EXPECT_TRUE(parsed("7").isEmpty());
    EXPECT_TRUE(parsed("\"text\"").isEmpty());
    EXPECT_TRUE(parsed("[]").isEmpty());
    EXPECT_TRUE(parsed("").isEmpty());
    EXPECT_TRUE(parsed("<html></html>").isEmpty());
}

TEST(AdvertisementFeedTest, OneAdGoesBeforeManyAndThoseBeforeItems)
{
    const QByteArray items = R"("items": [)" + named("Item") + "]";
    const QByteArray ads = R"("ads": [)" + named("First") + ", " + named("Second") + "]";
    const QByteArray ad = R"("ad": )" + named("Only");

    EXPECT_EQ(titles("{" + items + ", " + ads + ", " + ad + "}"), QStringList(u"Only"_qs));
    EXPECT_EQ(titles("{" + items + ", " + ads + "}"), QStringList({u"First"_qs, u"Second"_qs}));
    EXPECT_EQ(titles("{" + items + "}"), QStringList(u"Item"_qs));
}

TEST(AdvertisementFeedTest, WhatIsNotOfTheRightKindIsPassedOver)
{
    const QByteArray items = R"("items": [)" + named("Item") + "]";

    EXPECT_EQ(titles(R"({"ad": "text", "ads": [1], )" + items + "}"), QStringList(u"Item"_qs));
}

TEST(AdvertisementFeedTest, AnEmptyListOfAdsIsAListAllTheSame)
{
    EXPECT_TRUE(parsed(R"({"ads": [], "items": [)" + named("Item") + "]}").isEmpty());
}

TEST(AdvertisementFeedTest, AnObjectWithoutAListIsItselfTheItem)
{
    EXPECT_EQ(titles(named("Alone")), QStringList(u"Alone"_qs));
}

TEST(AdvertisementFeedTest, AFeedThatIsSwitchedOffHasNone)
{
    EXPECT_TRUE(parsed(R"({"enabled": false, "ads": [)" + named("One") + "]}").isEmpty());
    EXPECT_EQ(titles(R"({"enabled": true, "ads": [)" + named("One") + "]}"), QStringList(u"One"_qs));
}

TEST(AdvertisementFeedTest, AnItemThatIsSwitchedOffIsLeftOut)
{
    const QByteArray off = QByteArray(R"({"enabled": false, )") + click + "}";

    EXPECT_EQ(titles("[" + off + ", " + named("On") + "]"), QStringList(u"On"_qs));
    EXPECT_TRUE(parsed("[" + off + ", " + off + "]").isEmpty());
}

TEST(AdvertisementFeedTest, OnlyTheTruthValueFalseSwitchesOff)
{
    EXPECT_EQ(titles(QByteArray(R"([{"enabled": 0, )") + click + R"(}, {"enabled": "false", )" + click + "}]").size(),
              2);
}

TEST(AdvertisementFeedTest, AnItemThatLeadsNowhereIsDroppedEvenWhenAllElseIsThere)
{
    const QByteArray rest = R"("title": "T", "subtitle": "S", "media": "https://host.test/a.png", "duration": 9)";

    EXPECT_TRUE(parsed("[{" + rest + "}]").isEmpty());
    EXPECT_TRUE(parsed("[{" + rest + R"(, "click": "  ", "href": ""}])").isEmpty());
    EXPECT_EQ(parsed("[{" + rest + R"(, "href": "https://host.test/"}])").size(), 1);
}

class AdvertisementTitleKeyTest : public testing::TestWithParam<const char *>
{
};

TEST_P(AdvertisementTitleKeyTest, IsReadAsTheTitle)
{
    EXPECT_EQ(item(QByteArray("\"") + GetParam() + "\": \" Hello\\n\"").title, u"Hello");
}

INSTANTIATE_TEST_SUITE_P(Keys, AdvertisementTitleKeyTest, testing::Values("title", "name", "headline"));

class AdvertisementSubtitleKeyTest : public testing::TestWithParam<const char *>
{
};

TEST_P(AdvertisementSubtitleKeyTest, IsReadAsTheText)
{
    EXPECT_EQ(item(QByteArray("\"") + GetParam() + "\": \"More\"").subtitle, u"More");
}

INSTANTIATE_TEST_SUITE_P(Keys, AdvertisementSubtitleKeyTest,
                         testing::Values("subtitle", "description", "text", "body"));

class AdvertisementMediaKeyTest : public testing::TestWithParam<const char *>
{
};

TEST_P(AdvertisementMediaKeyTest, IsReadAsTheMedia)
{
    const Advertisement found = item(QByteArray("\"") + GetParam() + R"(": "https://host.test/a.png")");

    EXPECT_EQ(found.mediaURL, QUrl(u"https://host.test/a.png"_qs));
    EXPECT_EQ(found.mediaKind, AdvertisementMediaKind::Image);
}

INSTANTIATE_TEST_SUITE_P(Keys, AdvertisementMediaKeyTest,
                         testing::Values("media", "media_url", "mediaURL", "url", "image", "image_url", "imageURL",
                                         "video", "video_url", "videoURL", "youtube", "youtube_url", "youtubeURL",
                                         "youtube_id", "youtubeId", "mov", "mov_url", "movURL"));

class AdvertisementClickKeyTest : public testing::TestWithParam<const char *>
{
};

TEST_P(AdvertisementClickKeyTest, IsReadAsWhereAClickLeads)
{
    const QList<Advertisement> found = parsed(QByteArray("{\"") + GetParam() + R"(": "https://other.test/x"})");

    ASSERT_EQ(found.size(), 1);
    EXPECT_EQ(found.first().clickURL, QUrl(u"https://other.test/x"_qs));
}

INSTANTIATE_TEST_SUITE_P(Keys, AdvertisementClickKeyTest,
                         testing::Values("click", "click_url", "clickURL", "link", "target", "target_url", "targetURL",
                                         "href"));

class AdvertisementDurationKeyTest : public testing::TestWithParam<const char *>
{
};

TEST_P(AdvertisementDurationKeyTest, IsReadAsTheTimeOnScreen)
{
    EXPECT_EQ(item(QByteArray("\"") + GetParam() + "\": 12.5").duration, 12.5);
}

INSTANTIATE_TEST_SUITE_P(Keys, AdvertisementDurationKeyTest,
                         testing::Values("duration", "show_duration", "showDuration", "display_duration",
                                         "displayDuration", "seconds"));

TEST(AdvertisementFeedTest, TheFirstKeyThatHasAValueWins)
{
    EXPECT_EQ(item(R"("headline": "Third", "name": "Second", "title": "First")").title, u"First");
    EXPECT_EQ(item(R"("title": " \t\n", "name": null, "headline": "Third")").title, u"Third");
    EXPECT_EQ(item(R"("movURL": "https://host.test/b.mov", "media": "https://host.test/a.png")").mediaURL,
              QUrl(u"https://host.test/a.png"_qs));
    EXPECT_EQ(item(R"("seconds": 40, "duration": 20)").duration, 20);
    EXPECT_EQ(item(R"("seconds": 40, "duration": null)").duration, 40);
}

TEST(AdvertisementFeedTest, ANumberCountsAsItsText)
{
    EXPECT_EQ(item(R"("title": 2026)").title, u"2026");
    EXPECT_EQ(item(R"("title": 1.5)").title, u"1.5");
    EXPECT_EQ(item(R"("title": true, "name": "Name")").title, u"Name");
}

TEST(AdvertisementFeedTest, AnItemThatSaysNothingElseHasTheUsualValues)
{
    const Advertisement found = item("");

    EXPECT_EQ(found.title, u"Advertisement");
    EXPECT_EQ(found.subtitle, u"");
    EXPECT_EQ(found.mediaURL, std::nullopt);
    EXPECT_EQ(found.mediaKind, AdvertisementMediaKind::None);
    EXPECT_EQ(found.duration, 30);
    EXPECT_FALSE(found.isFallback);
}

struct DurationCase
{
    const char *name;
    const char *json;
    double seconds;
};

class AdvertisementDurationTest : public testing::TestWithParam<DurationCase>
{
};

TEST_P(AdvertisementDurationTest, StaysBetweenFiveSecondsAndTenMinutes)
{
    EXPECT_EQ(item(QByteArray("\"seconds\": ") + GetParam().json).duration, GetParam().seconds);
}

INSTANTIATE_TEST_SUITE_P(Durations, AdvertisementDurationTest,
                         testing::Values(DurationCase{"TwoSecondsShowForFive", "2", 5},
                                         DurationCase{"NineThousandShowForSixHundred", "9000", 600},
                                         DurationCase{"Five", "5", 5}, DurationCase{"SixHundred", "600", 600},
                                         DurationCase{"Fraction", "7.25", 7.25}, DurationCase{"Text", "\"45\"", 45},
                                         DurationCase{"Negative", "-3", 5}, DurationCase{"Null", "null", 30},
                                         DurationCase{"Word", "\"long\"", 30}, DurationCase{"Truth", "true", 30},
                                         DurationCase{"NotANumber", "\"nan\"", 30},
                                         DurationCase{"Endless", "\"inf\"", 600}),
                         [](const auto &info) { return info.param.name; });

struct MediaCase
{
    const char *name;
    const char *media;
    AdvertisementMediaKind kind;
    const char *url; ///< Empty for none.
};

class AdvertisementMediaTest : public testing::TestWithParam<MediaCase>
{
};

TEST_P(AdvertisementMediaTest, IsKnownByItsAddress)
{
    const Advertisement found = item(QByteArray("\"media\": \"") + GetParam().media + "\"");

    EXPECT_EQ(found.mediaKind, GetParam().kind);
    EXPECT_EQ(found.mediaURL.value_or(QUrl()).toString(), QString::fromLatin1(GetParam().url));
}

INSTANTIATE_TEST_SUITE_P(
    Media, AdvertisementMediaTest,
    testing::Values(
        MediaCase{"Picture", "https://host.test/a.png", AdvertisementMediaKind::Image, "https://host.test/a.png"},
        MediaCase{"PictureWithoutEnding", "https://host.test/a", AdvertisementMediaKind::Image, "https://host.test/a"},
        MediaCase{"Mov", "https://host.test/A.MOV", AdvertisementMediaKind::Movie, "https://host.test/A.MOV"},
        MediaCase{"Mp4", "https://host.test/a.mp4", AdvertisementMediaKind::Movie, "https://host.test/a.mp4"},
        MediaCase{"M4v", "https://host.test/a.m4v", AdvertisementMediaKind::Movie, "https://host.test/a.m4v"},
        MediaCase{"MovieWithAQuery", "https://host.test/a.mp4?b=1", AdvertisementMediaKind::Image,
                  "https://host.test/a.mp4?b=1"},
        MediaCase{"VideoPage", "https://www.YouTube.com/watch?v=abc", AdvertisementMediaKind::Youtube,
                  "https://www.youtube.com/watch?v=abc"},
        MediaCase{"ShortVideoLink", "https://youtu.be/abc.mp4", AdvertisementMediaKind::Youtube,
                  "https://youtu.be/abc.mp4"},
        MediaCase{"VideoIdOfTen", "abcdefghij", AdvertisementMediaKind::Youtube,
                  "https://www.youtube.com/watch?v=abcdefghij"},
        MediaCase{"VideoIdOfNine", "abcdefghi", AdvertisementMediaKind::None, ""},
        MediaCase{"PathWithoutScheme", "pictures/of/something.png", AdvertisementMediaKind::None, ""}),
    [](const auto &info) { return info.param.name; });

TEST(AdvertisementFeedTest, AVideoIdOfElevenCharactersIsAVideo)
{
    EXPECT_EQ(item(R"("youtube_id": "dQw4w9WgXcQ")").mediaKind, AdvertisementMediaKind::Youtube);
}

TEST(AdvertisementFeedTest, AVideoIdOfThreeCharactersIsNone)
{
    EXPECT_EQ(item(R"("youtube_id": "abc")").mediaKind, AdvertisementMediaKind::None);
}

TEST(AdvertisementFeedTest, TextsEndWhereNoCardHasRoomForMore)
{
    const QByteArray most(300, 'a');
    const QByteArray withAPair = QByteArray(299, 'a') + "\xF0\x9F\x92\xA7";

    EXPECT_EQ(item("\"title\": \"" + most + "\"").title.size(), 300);
    EXPECT_EQ(item("\"title\": \"" + most + "b\"").title, QString::fromLatin1(most));
    EXPECT_EQ(item("\"text\": \"" + QByteArray(500'000, 'a') + "\"").subtitle, QString::fromLatin1(most));
    EXPECT_EQ(item("\"text\": \"" + withAPair + "\"").subtitle, QString(299, u'a'));
}

TEST(AdvertisementFeedTest, ATenThousandfoldNestingIsNoFeed)
{
    EXPECT_TRUE(parsed(QByteArray(10'000, '[') + QByteArray(10'000, ']')).isEmpty());
}

TEST(AdvertisementFeedTest, TheServiceParsesForTheLanguageOfTheMoment)
{
    InstalledLocalizer localizer;
    localizer->setLanguage(Language::Russian);
    const QByteArray address = AdvertisementService::fallback(Language::English).clickURL.toEncoded();

    const QList<Advertisement> found = AdvertisementService::parseAdvertisements("{\"link\": \"" + address + "\"}");

    ASSERT_EQ(found.size(), 1);
    EXPECT_EQ(found.first().clickURL.path(), u"/ru/");
}
