#include "Services/AdvertisementService.h"
#include "Fakes/Gate.h"
#include "Fakes/InstalledLocalizer.h"
#include "Fakes/PretendUrlSession.h"
#include "Utilities/BackgroundWork.h"
#include "Utilities/PromotionalHost.h"

#include <gmock/gmock.h>

using namespace Quillmere;

namespace {

class AdvertisementServiceTest : public testing::Test
{
protected:
    QList<Advertisement> load() { return service.loadAdvertisements({}).result(); }
    QList<Advertisement> loadFrom(const QByteArray &feed, int status = 200)
    {
        session->serve(AdvertisementService::endpoint(), feed, status);
        return load();
    }

    InstalledLocalizer localizer;
    std::shared_ptr<PretendUrlSession> session = std::make_shared<PretendUrlSession>();
    AdvertisementService service{session};
    const QByteArray good = R"({"title": "Good", "link": "https://other.test/"})";
    const QList<Advertisement> fallback{AdvertisementService::fallback(Language::English)};
};

} // namespace

TEST_F(AdvertisementServiceTest, AsksForTheFeedAsItIsNowAndWaitsEightSeconds)
{
    load();

    ASSERT_EQ(session->requests().size(), 1);
    const UrlRequest &request = session->requests().first();
    EXPECT_EQ(request.url.toString(), u"https://"_qs + promotionalHost() + u"/advapi/adv.json"_qs);
    EXPECT_EQ(request.timeout, std::chrono::seconds(8));
    EXPECT_EQ(request.deadline, std::chrono::seconds(8));
    EXPECT_TRUE(request.ignoresCache);
}

TEST_F(AdvertisementServiceTest, LoadsWhatTheFeedHolds)
{
    const QList<Advertisement> loaded = loadFrom(good);

    ASSERT_EQ(loaded.size(), 1);
    EXPECT_EQ(loaded.first().title, u"Good");
}

TEST_F(AdvertisementServiceTest, TakesAnyStatusOfSuccess)
{
    EXPECT_EQ(loadFrom(good, 200).first().title, u"Good");
    EXPECT_EQ(loadFrom(good, 299).first().title, u"Good");
}

TEST_F(AdvertisementServiceTest, FallsBackForAnyOtherStatus)
{
    EXPECT_EQ(loadFrom(good, 199), fallback);
    EXPECT_EQ(loadFrom(good, 300), fallback);
    EXPECT_EQ(loadFrom(good, 404), fallback);
}

TEST_F(AdvertisementServiceTest, FallsBackWhereTheHostCannotBeReached)
{
    EXPECT_EQ(load(), fallback);
}

TEST_F(AdvertisementServiceTest, FallsBackForAnEmptyAnswerAndForOneThatIsNoFeed)
{
    EXPECT_EQ(loadFrom(""), fallback);
    EXPECT_EQ(loadFrom("<html>"), fallback);
    EXPECT_EQ(loadFrom("[]"), fallback);
}

TEST_F(AdvertisementServiceTest, FallsBackForAFeedThatIsSwitchedOff)
{
    EXPECT_EQ(loadFrom(R"({"enabled": false, "ads": [{"link": "https://other.test/"}]})"), fallback);
}

TEST_F(AdvertisementServiceTest, FallsBackForAFeedOfItemsThatAreSwitchedOff)
{
    EXPECT_EQ(loadFrom(R"([{"enabled": false, "link": "https://other.test/"}])"), fallback);
}

TEST_F(AdvertisementServiceTest, FallsBackForAHundredMegabytesAndForTenThousandLevels)
{
    EXPECT_EQ(loadFrom(QByteArray(100'000'000, ' ') + good), fallback);
    EXPECT_EQ(loadFrom(QByteArray(10'000, '[') + good + QByteArray(10'000, ']')), fallback);
}

TEST_F(AdvertisementServiceTest, FallsBackInTheLanguageOfTheMoment)
{
    localizer->setLanguage(Language::Russian);

    EXPECT_EQ(load(), QList{AdvertisementService::fallback(Language::Russian)});
}

TEST_F(AdvertisementServiceTest, KeepsThePicturesAndMoviesOfThePresentRound)
{
    const QUrl picture(u"https://host.test/a.png"_qs);
    const QUrl still(u"https://img.youtube.com/vi/dQw4w9WgXcQ/hqdefault.jpg"_qs);
    const QByteArray both = R"([{"link": "https://other.test/", "media": "https://host.test/a.png"},
                                {"link": "https://other.test/", "youtube_id": "dQw4w9WgXcQ"}])";
    session->serve(picture, "a");
    session->serve(still, "b");
    const auto askForBoth = [&] {
        const qsizetype before = session->requests().size();
        for (const QUrl &url : {picture, still}) {
            UrlRequest request;
            request.url = url;
            request.mostBytes = 10;
            EXPECT_TRUE(service.media()->data(request, {}).result());
        }
        return session->requests().size() - before;
    };
    service.beginRound(loadFrom(both));
    EXPECT_EQ(askForBoth(), 2);

    service.beginRound(loadFrom(both));
    EXPECT_EQ(askForBoth(), 0);

    service.forgetMedia();
    EXPECT_EQ(askForBoth(), 2);
    service.beginRound(loadFrom(both));
    EXPECT_EQ(askForBoth(), 2);
    service.beginRound(loadFrom(good));
    EXPECT_EQ(askForBoth(), 2);
}

TEST_F(AdvertisementServiceTest, EndsEarlyWhenItIsStopped)
{
    session->hold();
    std::stop_source stop;
    const QFuture<QList<Advertisement>> loading = service.loadAdvertisements(stop.get_token());
    EXPECT_FALSE(loading.isFinished());

    stop.request_stop();

    backgroundPool().waitForDone();
    EXPECT_TRUE(loading.isFinished());
    EXPECT_EQ(session->waiting(), 0);
    EXPECT_EQ(loading.result(), fallback);
}

TEST_F(AdvertisementServiceTest, ReadsTheFeedWhereNobodyIsKeptWaiting)
{
    session->serve(AdvertisementService::endpoint(), good);
    const Gate gate;
    for (int thread = 0; thread < backgroundPool().maxThreadCount(); ++thread)
        backgroundPool().start([gate] { gate.wait(); });

    const QFuture<QList<Advertisement>> loading = service.loadAdvertisements({});

    EXPECT_FALSE(loading.isFinished());
    gate.open();
    EXPECT_EQ(loading.result().first().title, u"Good");
}

TEST(AdvertisementFallbackTest, SpeaksEachLanguage)
{
    const Advertisement english = AdvertisementService::fallback(Language::English);
    const Advertisement spanish = AdvertisementService::fallback(Language::Spanish);
    const Advertisement russian = AdvertisementService::fallback(Language::Russian);

    EXPECT_EQ(english.title, u"Farhop");
    EXPECT_EQ(english.subtitle,
              u"We are not a VPN. Zeplink is a new censorship circumvention technology and secure eSIMs. With us, you "
              "teleport from censorship and do it legally!");
    EXPECT_EQ(english.clickURL, QUrl(u"https://"_qs + promotionalHost() + u"/en/"_qs));
    EXPECT_EQ(spanish.clickURL, QUrl(u"https://"_qs + promotionalHost() + u"/es/"_qs));
    EXPECT_EQ(russian.clickURL, QUrl(u"https://"_qs + promotionalHost() + u"/ru/"_qs));
    EXPECT_NE(spanish.subtitle, english.subtitle);
    EXPECT_NE(russian.subtitle, english.subtitle);
    EXPECT_EQ(AdvertisementService::fallback(Language::System), english);
}

TEST(AdvertisementFallbackTest, IsWithoutMediaForThirtySeconds)
{
    const Advertisement fallback = AdvertisementService::fallback(Language::English);

    EXPECT_EQ(fallback.mediaURL, std::nullopt);
    EXPECT_EQ(fallback.mediaKind, AdvertisementMediaKind::None);
    EXPECT_EQ(fallback.duration, 30);
    EXPECT_TRUE(fallback.isFallback);
}
