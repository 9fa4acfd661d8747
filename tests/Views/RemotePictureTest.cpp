#include "Views/Support/RemotePicture.h"
#include "Fakes/PretendUrlSession.h"
#include "Views/Support/RemoteImageProvider.h"

#include <QBuffer>
#include <QPainter>
#include <QSignalSpy>
#include <QTest>
#include <QtEndian>

#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

QByteArray picture(const QSize &size, const char *format = "png")
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::darkCyan);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    EXPECT_TRUE(image.save(&buffer, format));
    return bytes;
}

/// A PNG that says of itself to be of that size.
QByteArray pretending(const QSize &size)
{
    QByteArray bytes = picture({8, 8});
    // The header: a length, its name, the width, the height, five bytes, and a checksum over all but the length.
    constexpr qsizetype header = 12;
    qToBigEndian<quint32>(quint32(size.width()), bytes.data() + header + 4);
    qToBigEndian<quint32>(quint32(size.height()), bytes.data() + header + 8);
    quint32 sum = 0xffffffff;
    for (const char each : bytes.sliced(header, 17)) {
        sum ^= quint8(each);
        for (int bit = 0; bit < 8; ++bit)
            sum = (sum >> 1) ^ (0xedb88320 & (0 - (sum & 1)));
    }
    qToBigEndian<quint32>(~sum, bytes.data() + header + 17);
    return bytes;
}

constexpr QSize singlePixel{1, 1};

class RemoteImageTest : public testing::Test
{
protected:
    std::unique_ptr<QQuickImageResponse> request()
    {
        const QString id = QString::fromLatin1(QUrl::toPercentEncoding(url.toString()));
        return std::unique_ptr<QQuickImageResponse>(provider.requestImageResponse(id, {}));
    }
    /// The size of the picture that comes.
    QSize sizeOfWhatComes()
    {
        const std::unique_ptr<QQuickImageResponse> response = request();
        const QSignalSpy finished(response.get(), &QQuickImageResponse::finished);
        EXPECT_TRUE(QTest::qWaitFor([&] { return finished.size() > 0; }));
        const std::unique_ptr<QQuickTextureFactory> factory(response->textureFactory());
        EXPECT_EQ(response->errorString(), QString());
        return factory ? factory->textureSize() : QSize();
    }

    std::shared_ptr<PretendUrlSession> session = std::make_shared<PretendUrlSession>();
    RemoteImageProvider provider{session};
    const QUrl url{u"https://host.test/a b/ü.png?x=1&y=%2F"_qs};
};

} // namespace

TEST(RemotePictureTest, ReadsTheFormatsOfPictures)
{
    for (const char *format : {"png", "jpeg", "webp"})
        EXPECT_EQ(decodedPicture(picture({64, 32}, format)).size(), QSize(64, 32)) << format;
    // Qt writes none of this format: a screen of 8 by 4, and one picture of one colour on it.
    const QByteArray gif = QByteArray::fromHex("47494638396108000400f00000ff0000000000"
                                               "21f90400000000002c0000000008000400000205848fa98b05003b");
    EXPECT_EQ(decodedPicture(gif).size(), QSize(8, 4));
}

TEST(RemotePictureTest, IsNoLargerThanThePlaceNeeds)
{
    EXPECT_EQ(decodedPicture(picture({3120, 756})).size(), QSize(1560, 378));
    EXPECT_EQ(decodedPicture(picture({800, 800})).size(), QSize(780, 780));
}

TEST(RemotePictureTest, RefusesAPictureThatWouldFillTheMemory)
{
    EXPECT_TRUE(decodedPicture(pretending({50'000, 50'000})).isNull());
    EXPECT_TRUE(decodedPicture(pretending({2'000'000'000, 2'000'000'000})).isNull());
    EXPECT_TRUE(decodedPicture(picture({4001, 4000})).isNull());
    EXPECT_FALSE(decodedPicture(picture({4000, 4000})).isNull());
}

TEST(RemotePictureTest, RefusesWhatIsNoPicture)
{
    EXPECT_TRUE(decodedPicture({}).isNull());
    EXPECT_TRUE(decodedPicture("<html></html>").isNull());
    EXPECT_TRUE(decodedPicture(QByteArray(5000, '\xA5')).isNull());
    EXPECT_TRUE(decodedPicture(pretending({0, 8})).isNull());
}

TEST(RemotePictureTest, RefusesDrawingsWhichCanNameOtherFiles)
{
    EXPECT_TRUE(decodedPicture("<svg xmlns='http://www.w3.org/2000/svg' width='8' height='8'><rect width='8' "
                               "height='8'/></svg>")
                    .isNull());
    EXPECT_TRUE(decodedPicture("/* XPM */\nstatic char *a[] = {\"1 1 1 1\", \"a c #ffffff\", \"a\"};").isNull());
}

TEST(RemotePictureTest, TakesWhatThereIsOfABrokenOneOrNothing)
{
    const QByteArray whole = picture({600, 600}, "jpeg");
    for (qsizetype length = 0; length < whole.size(); length += 97)
        EXPECT_LE(decodedPicture(whole.first(length)).width(), 780);
}

TEST_F(RemoteImageTest, ServesThePictureBehindTheAddress)
{
    session->serve(url, picture({40, 20}));

    EXPECT_EQ(sizeOfWhatComes(), QSize(40, 20));
    EXPECT_EQ(session->requests().first().url, url);
}

TEST_F(RemoteImageTest, ServesASinglePixelSilentlyWhereThereIsNone)
{
    EXPECT_EQ(sizeOfWhatComes(), singlePixel);
    session->serve(url, picture({40, 20}), 404);
    EXPECT_EQ(sizeOfWhatComes(), singlePixel);
    session->serve(url, "garbage");
    EXPECT_EQ(sizeOfWhatComes(), singlePixel);
    session->serve(url, picture({40, 20}) + QByteArray(8 * 1024 * 1024, '\0'));
    EXPECT_EQ(sizeOfWhatComes(), singlePixel);
}

TEST_F(RemoteImageTest, EndsAtOnceWhenNobodyWaitsAnyMore)
{
    session->hold();
    const std::unique_ptr<QQuickImageResponse> response = request();
    const QSignalSpy finished(response.get(), &QQuickImageResponse::finished);
    ASSERT_TRUE(QTest::qWaitFor([&] { return session->waiting() == 1; }));

    response->cancel();

    EXPECT_TRUE(QTest::qWaitFor([&] { return finished.size() == 1 && session->waiting() == 0; }));
}

TEST_F(RemoteImageTest, MayBeForgottenWhileItIsOnItsWay)
{
    session->hold();
    std::unique_ptr<QQuickImageResponse> response = request();
    ASSERT_TRUE(QTest::qWaitFor([&] { return session->waiting() == 1; }));

    response.reset();
    session->release();

    EXPECT_TRUE(QTest::qWaitFor([&] { return session->waiting() == 0; }));
}
