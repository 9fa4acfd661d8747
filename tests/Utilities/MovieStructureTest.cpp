#include "Utilities/MovieStructure.h"
#include "Fakes/PretendMovie.h"

#include <QBuffer>

#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

bool isMovie(QByteArray content)
{
    QBuffer file(&content);
    return file.open(QIODevice::ReadOnly) && isSelfContainedMovie(file);
}

bool isMovieOf(const QByteArray &tables)
{
    return isMovie(PretendMovie::file(tables));
}

const QSize usual(320, 200);

} // namespace

TEST(MovieStructureTest, TakesAMovieThatHoldsAllItNeeds)
{
    EXPECT_TRUE(isMovie(PretendMovie::good()));
    EXPECT_TRUE(isMovieOf(PretendMovie::track(usual, PretendMovie::reference("alis"))));
    EXPECT_TRUE(isMovieOf(PretendMovie::track({0, 0}) + PretendMovie::track(usual)));
}

TEST(MovieStructureTest, TakesLengthsOfEightBytesAndALastBoxOfAllThatIsLeft)
{
    const QByteArray tables = PretendMovie::box("moov", PretendMovie::track(usual));
    const QByteArray wide
        = PretendMovie::number(1) + "mdat" + PretendMovie::number(0) + PretendMovie::number(20) + "four";

    EXPECT_TRUE(isMovie(wide + tables));
    EXPECT_TRUE(isMovie(tables + PretendMovie::number(0) + "mdat and so on"));
}

TEST(MovieStructureTest, RefusesWhatDoesNotBeginLikeAMovie)
{
    const QByteArray list = "#EXTM3U\nfile:///etc/hostname\n";

    EXPECT_FALSE(isMovie({}));
    EXPECT_FALSE(isMovie("abc"));
    EXPECT_FALSE(isMovie(list));
    EXPECT_FALSE(isMovie(QByteArray(5000, '\xA5')));
    EXPECT_FALSE(isMovie(PretendMovie::box("list", list) + PretendMovie::good()));
}

TEST(MovieStructureTest, RefusesRubbishBehindAGoodBeginning)
{
    const QByteArray beginning = PretendMovie::box("ftyp", "qt  ");

    EXPECT_FALSE(isMovie(beginning));
    EXPECT_FALSE(isMovie(beginning + " and so on"));
    EXPECT_FALSE(isMovie(beginning + QByteArray(5000, '\xA5')));
    EXPECT_FALSE(isMovie(PretendMovie::good() + "rest"));
    EXPECT_FALSE(isMovie(beginning + PretendMovie::box("mdat", "pictures")));
    EXPECT_FALSE(isMovie(beginning + PretendMovie::box("moov", PretendMovie::track(usual))));
    EXPECT_FALSE(isMovieOf("rubbish"));
    EXPECT_FALSE(isMovieOf(PretendMovie::box("trak", "rubbish")));
}

TEST(MovieStructureTest, RefusesAMovieThatBreaksOffAnywhere)
{
    const QByteArray whole = PretendMovie::good();
    for (qsizetype length = 0; length < whole.size(); ++length)
        EXPECT_FALSE(isMovie(whole.first(length))) << length;
}

TEST(MovieStructureTest, LivesThroughAnyByteBeingAnother)
{
    const QByteArray whole = PretendMovie::good();
    int taken = 0;
    for (qsizetype at = 0; at < whole.size(); ++at) {
        for (const char other : {'\0', '\1', '\x7f', '\xff'}) {
            QByteArray changed = whole;
            changed[at] = other;
            taken += isMovie(changed) ? 1 : 0;
        }
    }

    // The pictures and most of a track's header may be anything; the boxes may not.
    EXPECT_GT(taken, 0);
    EXPECT_LT(taken, whole.size() * 4);
}

TEST(MovieStructureTest, RefusesLengthsBeyondTheEndAndWithinTheHeader)
{
    const QByteArray tables = PretendMovie::box("moov", PretendMovie::track(usual));
    const auto mediaOfLength = [&](quint32 upper, quint32 lower) {
        return tables + PretendMovie::number(1) + "mdat" + PretendMovie::number(upper) + PretendMovie::number(lower);
    };

    EXPECT_TRUE(isMovie(mediaOfLength(0, 16)));
    EXPECT_FALSE(isMovie(mediaOfLength(0, 15)));
    EXPECT_FALSE(isMovie(mediaOfLength(0, 17)));
    EXPECT_FALSE(isMovie(mediaOfLength(0xffffffff, 0xffffffff)));
    EXPECT_FALSE(isMovie(tables + PretendMovie::number(7) + "mdat"));
}

TEST(MovieStructureTest, RefusesPicturesOfMoreThan4096PixelsASide)
{
    EXPECT_TRUE(isMovieOf(PretendMovie::track({4096, 4096})));
    EXPECT_FALSE(isMovieOf(PretendMovie::track({4097, 16})));
    EXPECT_FALSE(isMovieOf(PretendMovie::track({16, 4097})));
    EXPECT_FALSE(isMovieOf(PretendMovie::track(usual) + PretendMovie::track({16'000, 16'000})));
}

TEST(MovieStructureTest, RefusesAMovieWithoutAPicture)
{
    EXPECT_FALSE(isMovieOf({}));
    EXPECT_FALSE(isMovieOf(PretendMovie::track({0, 0})));
}

TEST(MovieStructureTest, RefusesATrackThatLiesElsewhere)
{
    const QByteArray address = "https://other.test/a.mov";

    EXPECT_FALSE(isMovieOf(PretendMovie::track(usual, PretendMovie::reference("url ", 0, address))));
    EXPECT_FALSE(isMovieOf(PretendMovie::track(usual, PretendMovie::reference("url ", 1, address))));
    EXPECT_FALSE(isMovieOf(PretendMovie::track(usual, PretendMovie::reference("alis", 0, QByteArray(150, 'a')))));
    EXPECT_FALSE(isMovieOf(PretendMovie::track(usual, PretendMovie::reference("url ", 0))));
    EXPECT_FALSE(
        isMovieOf(PretendMovie::track(usual, PretendMovie::reference() + PretendMovie::reference("alis", 0, address))));
    EXPECT_FALSE(isMovieOf(PretendMovie::track(usual, {})));
}

TEST(MovieStructureTest, RefusesAMovieThatNamesAnotherInItsPlace)
{
    const QByteArray other = PretendMovie::box(
        "rmra", PretendMovie::box("rmda", PretendMovie::box("rdrf", "url https://other.test/a.mov")));

    EXPECT_FALSE(isMovieOf(other));
    EXPECT_FALSE(isMovieOf(PretendMovie::track(usual) + other));
    EXPECT_FALSE(isMovie(PretendMovie::good() + other));
}

TEST(MovieStructureTest, RefusesTablesThatArePackedOrStandTwice)
{
    EXPECT_FALSE(isMovieOf(PretendMovie::track(usual) + PretendMovie::box("cmov", "packed")));
    EXPECT_FALSE(isMovie(PretendMovie::good() + PretendMovie::box("moov", PretendMovie::track(usual))));
}

TEST(MovieStructureTest, RefusesThousandsOfBoxes)
{
    QByteArray many = PretendMovie::good();
    for (int i = 0; i < 5000; ++i)
        many += PretendMovie::box("free", {});

    EXPECT_FALSE(isMovie(many));
}
