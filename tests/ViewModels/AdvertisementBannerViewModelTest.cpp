#include "ViewModels/AdvertisementBannerViewModel.h"
#include "Fakes/InstalledLocalizer.h"
#include "Fakes/PretendUrlSession.h"
#include "Fakes/PretendWorkspace.h"
#include "Utilities/BackgroundWork.h"
#include "Utilities/PromotionalHost.h"

#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>

using namespace Quillmere;

namespace {

class AdvertisementBannerViewModelTest : public testing::Test
{
protected:
    ~AdvertisementBannerViewModelTest() override { settle(); }

    void serve(const QByteArray &feed) const { session->serve(AdvertisementService::endpoint(), feed); }
    /// Lets answers that have come reach the model.
    static void settle()
    {
        backgroundPool().waitForDone();
        for (int turn = 0; turn < 3; ++turn)
            QCoreApplication::processEvents();
    }
    void start()
    {
        model.start();
        settle();
    }
    /// What counts the time of the promotion that is shown.
    [[nodiscard]] QTimer *timer() const { return model.findChild<QTimer *>(); }
    /// Lets the time of the promotion that is shown come to its end.
    void endTime() const
    {
        const QSignalSpy ended(timer(), &QTimer::timeout);
        timer()->setInterval(0);
        EXPECT_TRUE(QTest::qWaitFor([&] { return ended.size() > 0; }));
        settle();
    }
    /// Where a click leads.
    [[nodiscard]] QUrl opened() const
    {
        model.open();
        backgroundPool().waitForDone();
        return workspace->opened().value(0);
    }

    InstalledLocalizer localizer;
    std::shared_ptr<PretendUrlSession> session = std::make_shared<PretendUrlSession>();
    std::shared_ptr<PretendWorkspace> workspace = std::make_shared<PretendWorkspace>();
    AdvertisementService service{session};
    AdvertisementBannerViewModel model{service, workspace};
    const QByteArray two = R"([{"title": "One", "link": "https://other.test/1", "seconds": 7},
                               {"title": "Two", "link": "https://other.test/2", "seconds": 9000}])";
};

} // namespace

TEST_F(AdvertisementBannerViewModelTest, BeginsWithTheFallbackBeforeAnythingIsAsked)
{
    EXPECT_EQ(model.advertisement(), AdvertisementService::fallback(Language::English));
    EXPECT_TRUE(session->requests().isEmpty());
    EXPECT_FALSE(model.isRefreshing());
}

TEST_F(AdvertisementBannerViewModelTest, ShowsEachItemInOrderForItsOwnTime)
{
    serve(two);

    start();
    EXPECT_EQ(model.title(), u"One");
    EXPECT_EQ(timer()->interval(), 7'000);
    endTime();
    EXPECT_EQ(model.title(), u"Two");
    EXPECT_EQ(timer()->interval(), 600'000);
    EXPECT_EQ(session->requests().size(), 1);
}

TEST_F(AdvertisementBannerViewModelTest, ReadsTheFeedAnewAfterTheLastItem)
{
    serve(two);
    start();
    endTime();
    serve(R"({"title": "Three", "link": "https://other.test/3"})");

    endTime();

    EXPECT_EQ(session->requests().size(), 2);
    EXPECT_EQ(model.title(), u"Three");
}

TEST_F(AdvertisementBannerViewModelTest, WaitsThirtySecondsBetweenAttemptsWithoutAFeed)
{
    start();
    EXPECT_TRUE(model.advertisement().isFallback);
    EXPECT_EQ(timer()->interval(), 30'000);
    EXPECT_EQ(session->requests().size(), 1);

    endTime();

    EXPECT_EQ(session->requests().size(), 2);
    EXPECT_TRUE(model.advertisement().isFallback);
}

TEST_F(AdvertisementBannerViewModelTest, TurnsBackToTheFallbackWhenTheFeedIsSwitchedOff)
{
    serve(two);
    start();
    endTime();
    serve(R"({"enabled": false})");

    endTime();

    EXPECT_TRUE(model.advertisement().isFallback);
}

TEST_F(AdvertisementBannerViewModelTest, SpeaksTheNewLanguageAtOnceWhileItShowsTheFallback)
{
    const QSignalSpy changed(&model, &AdvertisementBannerViewModel::advertisementChanged);

    localizer->setLanguage(Language::Russian);

    EXPECT_EQ(model.advertisement(), AdvertisementService::fallback(Language::Russian));
    EXPECT_EQ(changed.size(), 1);
}

TEST_F(AdvertisementBannerViewModelTest, LeavesAFeedItemAsItIsUntilItsTimeIsUpWhenTheLanguageChanges)
{
    serve(two);
    start();
    const Advertisement shown = model.advertisement();

    localizer->setLanguage(Language::Russian);

    EXPECT_EQ(model.advertisement(), shown);
}

TEST_F(AdvertisementBannerViewModelTest, MakesTheFallbackAnewForTheLanguageOfItsTurn)
{
    session->hold();
    start();
    session->release();
    localizer->setLanguage(Language::Spanish);
    settle();

    EXPECT_EQ(model.advertisement(), AdvertisementService::fallback(Language::Spanish));
}

TEST_F(AdvertisementBannerViewModelTest, DoesNothingMoreOnceItIsStopped)
{
    serve(two);
    start();

    model.stop();

    EXPECT_FALSE(model.isRefreshing());
    EXPECT_FALSE(timer()->isActive());
    EXPECT_EQ(model.title(), u"One");
}

TEST_F(AdvertisementBannerViewModelTest, ShowsNothingOfAFeedThatComesAfterItWasStopped)
{
    serve(two);
    session->hold();
    start();
    EXPECT_EQ(session->waiting(), 1);

    model.stop();
    settle();

    EXPECT_EQ(session->waiting(), 0);
    EXPECT_TRUE(model.advertisement().isFallback);
    EXPECT_FALSE(timer()->isActive());
}

TEST_F(AdvertisementBannerViewModelTest, StartingAgainTakesThePlaceOfTheRoundBefore)
{
    serve(two);
    session->hold();
    start();
    serve(R"({"title": "New", "link": "https://other.test/"})");

    model.start();
    EXPECT_EQ(session->waiting(), 1);
    session->release();
    settle();

    EXPECT_EQ(model.title(), u"New");
    EXPECT_TRUE(model.isRefreshing());
}

TEST_F(AdvertisementBannerViewModelTest, MayGoWhileItIsWaitingForTheFeed)
{
    session->hold();
    {
        AdvertisementBannerViewModel other(service, workspace);
        other.start();
        EXPECT_EQ(session->waiting(), 1);
    }

    EXPECT_EQ(session->waiting(), 0);
    settle();
}

TEST_F(AdvertisementBannerViewModelTest, SaysNothingWhenTheSameComesAgain)
{
    start();
    const QSignalSpy changed(&model, &AdvertisementBannerViewModel::advertisementChanged);

    endTime();

    EXPECT_EQ(changed.size(), 0);
}

TEST_F(AdvertisementBannerViewModelTest, OpensAnAddressOnAnotherHostAsItStands)
{
    localizer->setLanguage(Language::Russian);
    serve(R"({"link": "https://other.test/en/?a=1"})");
    start();

    EXPECT_EQ(opened(), QUrl(u"https://other.test/en/?a=1"_qs));
}

TEST_F(AdvertisementBannerViewModelTest, OpensAPageOfThePromotionalHostInTheLanguageOfTheClick)
{
    serve("{\"link\": \"https://" + promotionalHost().toUtf8() + "/en/offer\"}");
    start();

    localizer->setLanguage(Language::Russian);

    EXPECT_EQ(opened(), QUrl(u"https://"_qs + promotionalHost() + u"/ru/offer"_qs));
}

TEST_F(AdvertisementBannerViewModelTest, OpensTheFallbacksPage)
{
    localizer->setLanguage(Language::Spanish);

    EXPECT_EQ(opened(), QUrl(u"https://"_qs + promotionalHost() + u"/es/"_qs));
}

TEST_F(AdvertisementBannerViewModelTest, OpensNothingButPagesOfTheWeb)
{
    for (const char *link : {"file:///usr/share/applications/a.desktop", "settings:panel", "relative/page"}) {
        serve(QByteArray("{\"link\": \"") + link + "\"}");
        start();
        EXPECT_FALSE(model.advertisement().isFallback) << link;
        EXPECT_EQ(opened(), QUrl()) << link;
    }
}

struct LayerCase
{
    const char *name;
    const char *media;
    AdvertisementBannerViewModel::Layer layer;
    const char *address;
};

class AdvertisementLayerTest : public AdvertisementBannerViewModelTest, public testing::WithParamInterface<LayerCase>
{
};

TEST_P(AdvertisementLayerTest, FollowsTheMedia)
{
    serve(QByteArray(R"({"link": "https://other.test/", "media": ")") + GetParam().media + "\"}");

    start();

    EXPECT_EQ(model.layer(), GetParam().layer);
    EXPECT_EQ(model.media(), QUrl(QString::fromLatin1(GetParam().address)));
}

INSTANTIATE_TEST_SUITE_P(
    Media, AdvertisementLayerTest,
    testing::Values(LayerCase{"Picture", "https://host.test/a.png", AdvertisementBannerViewModel::Layer::Picture,
                              "https://host.test/a.png"},
                    LayerCase{"Movie", "https://host.test/a.mov", AdvertisementBannerViewModel::Layer::Movie,
                              "https://host.test/a.mov"},
                    LayerCase{"Video", "dQw4w9WgXcQ", AdvertisementBannerViewModel::Layer::Video,
                              "https://img.youtube.com/vi/dQw4w9WgXcQ/hqdefault.jpg"},
                    LayerCase{"VideoWithoutAnId", "https://www.youtube.com/channel",
                              AdvertisementBannerViewModel::Layer::Fallback, ""},
                    LayerCase{"None", "", AdvertisementBannerViewModel::Layer::Fallback, ""}),
    [](const auto &info) { return info.param.name; });
