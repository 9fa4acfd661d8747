#include "Services/PromotionMedia.h"
#include "Fakes/PretendUrlSession.h"

#include <QFile>

#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

class PromotionMediaTest : public testing::Test
{
protected:
    PromotionMediaTest()
    {
        session->serve(first, "first");
        session->serve(second, "second");
    }

    static UrlRequest request(const QUrl &url)
    {
        UrlRequest made;
        made.url = url;
        made.mostBytes = 2 * PromotionMedia::mostKept;
        return made;
    }
    QByteArray data(const QUrl &url) const { return media->data(request(url), {}).result().valueOr({}).body; }
    [[nodiscard]] QByteArray downloaded(const QUrl &url) const
    {
        const Result<DownloadResponse> response = media->download(request(url), {}).result();
        QFile file(response ? response.value().file->location().toLocalFile() : QString());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("none");
    }

    std::shared_ptr<PretendUrlSession> session = std::make_shared<PretendUrlSession>();
    std::shared_ptr<PromotionMedia> media = std::make_shared<PromotionMedia>(session);
    const QUrl first{u"https://host.test/a.png"_qs};
    const QUrl second{u"https://host.test/b.mov"_qs};
};

} // namespace

TEST_F(PromotionMediaTest, FetchesWhatTheRoundNamesOnce)
{
    media->keepOnly({first, second});

    for (int turn = 0; turn < 3; ++turn) {
        EXPECT_EQ(data(first), "first");
        EXPECT_EQ(downloaded(second), "second");
        media->keepOnly({first, second});
    }

    EXPECT_EQ(session->requests().size(), 2);
}

TEST_F(PromotionMediaTest, ForgetsWhatTheNextRoundDoesNotName)
{
    media->keepOnly({first});
    EXPECT_EQ(data(first), "first");
    session->serve(first, "later");

    media->keepOnly({second});
    media->keepOnly({first});

    EXPECT_EQ(data(first), "later");
}

TEST_F(PromotionMediaTest, KeepsNothingThatNobodyNames)
{
    data(first);
    data(first);

    EXPECT_EQ(session->requests().size(), 2);
}

TEST_F(PromotionMediaTest, AsksAgainForWhatDidNotCome)
{
    media->keepOnly({first, second});
    session->serve(first, "missing", 404);
    session->lose(second);
    data(first);
    data(second);

    session->serve(first, "first");
    session->serve(second, "second");

    EXPECT_EQ(data(first), "first");
    EXPECT_EQ(data(second), "second");
}

TEST_F(PromotionMediaTest, FetchesAgainWhatIsTooMuchTogether)
{
    const QByteArray most(PromotionMedia::mostKept - 5, 'm');
    session->serve(second, most);
    media->keepOnly({first, second});
    EXPECT_EQ(data(second).size(), most.size());

    EXPECT_EQ(data(first), "first");
    EXPECT_EQ(session->requests().size(), 2);
    data(first);
    data(second);
    EXPECT_EQ(session->requests().size(), 2);

    const QUrl third(u"https://host.test/c.png"_qs);
    session->serve(third, "c");
    media->keepOnly({first, second, third});
    data(third);
    data(third);
    EXPECT_EQ(session->requests().size(), 4);
}

TEST_F(PromotionMediaTest, TellsThatItWasStoppedAndKeepsNothingThen)
{
    media->keepOnly({first});
    session->hold();
    std::stop_source stop;
    const QFuture<Result<UrlResponse>> answer = media->data(request(first), stop.get_token());
    stop.request_stop();

    ASSERT_TRUE(answer.isFinished());
    EXPECT_EQ(answer.result().failure().kind, Failure::Kind::Cancelled);
    session->release();
    EXPECT_EQ(data(first), "first");
}

TEST_F(PromotionMediaTest, MayGoWhileSomethingIsOnItsWay)
{
    session->hold();
    const QFuture<Result<UrlResponse>> answer = media->data(request(first), {});

    media.reset();
    session->release();

    ASSERT_TRUE(answer.isFinished());
    EXPECT_EQ(answer.result().valueOr({}).body, "first");
}
