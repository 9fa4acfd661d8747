#include "ViewModels/AdvertisementMovie.h"
#include "Fakes/PretendMovie.h"
#include "Fakes/PretendUrlSession.h"

#include <QCoreApplication>
#include <QFile>
#include <QSignalSpy>

#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

class AdvertisementMovieTest : public testing::Test
{
protected:
    ~AdvertisementMovieTest() override { settle(); }

    static void settle()
    {
        for (int turn = 0; turn < 3; ++turn)
            QCoreApplication::processEvents();
    }
    void fetch(const QByteArray &content, int status = 200)
    {
        session->serve(url, content, status);
        movie.fetch(url);
        settle();
    }

    std::shared_ptr<PretendUrlSession> session = std::make_shared<PretendUrlSession>();
    AdvertisementMovie movie{session};
    const QUrl url{u"https://host.test/a.mov"_qs};
    const QByteArray good = PretendMovie::good();
};

} // namespace

TEST_F(AdvertisementMovieTest, IsAFileOnceItHasCome)
{
    const QSignalSpy changed(&movie, &AdvertisementMovie::sourceChanged);

    fetch(good);

    EXPECT_EQ(changed.size(), 1);
    QFile file(movie.source().toLocalFile());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), good);
}

TEST_F(AdvertisementMovieTest, IsNoneWhereThereIsNone)
{
    movie.fetch(url);
    settle();
    EXPECT_EQ(movie.source(), QUrl());

    fetch(good, 404);
    EXPECT_EQ(movie.source(), QUrl());
}

TEST_F(AdvertisementMovieTest, KeepsWhatIsNoMovieFromThePlayer)
{
    for (const QByteArray &garbage :
         {QByteArray(), QByteArray("abc"), QByteArray(5000, '\xA5'), QByteArray("#EXTM3U\nfile:///etc/hostname\n"),
          QByteArray("ffconcat version 1.0\nfile '/etc/hostname'\n"), QByteArray("\0\0\0\x14", 4) + "ftypqt  and so on",
          PretendMovie::file(PretendMovie::track({320, 200}, PretendMovie::reference("url ", 0, "https://a.test/")))}) {
        fetch(garbage);
        EXPECT_EQ(movie.source(), QUrl()) << garbage.left(20).constData();
    }
}

TEST_F(AdvertisementMovieTest, IsNoneWhenItIsTooLong)
{
    fetch(good + PretendMovie::box("free", QByteArray(32 * 1024 * 1024, '\0')));

    EXPECT_EQ(movie.source(), QUrl());
}

TEST_F(AdvertisementMovieTest, GivesThePlaceToTheNext)
{
    fetch(good);
    const QString before = movie.source().toLocalFile();
    session->hold();

    movie.fetch(QUrl(u"https://host.test/b.mov"_qs));

    EXPECT_EQ(movie.source(), QUrl());
    EXPECT_FALSE(QFile::exists(before));
}

TEST_F(AdvertisementMovieTest, IsNoLongerWaitedForWhenItGoes)
{
    session->hold();
    {
        AdvertisementMovie other(session);
        other.fetch(url);
        EXPECT_EQ(session->waiting(), 1);
    }

    EXPECT_EQ(session->waiting(), 0);
}
