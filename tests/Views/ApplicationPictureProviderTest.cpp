#include "Views/Support/ApplicationPictureProvider.h"
#include "Views/Support/LetterTile.h"

#include <QFile>
#include <QTemporaryDir>
#include <QUrl>

#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

class ApplicationPictureProviderTest : public testing::Test
{
protected:
    /// A picture of one colour, whose file is small whatever its size.
    [[nodiscard]] QString picture(const QSize &size) const
    {
        QImage image(size, QImage::Format_RGB32);
        image.fill(Qt::red);
        const QString path = m_folder.filePath(u"picture of ours.png"_qs);
        EXPECT_TRUE(image.save(path));
        return path;
    }
    static QImage served(const QString &path)
    {
        const QString id = QString::fromLatin1(QUrl::toPercentEncoding(path)) + u"?Painter"_qs;
        QSize size;
        return ApplicationPictureProvider().requestImage(id, &size, side);
    }

    QTemporaryDir m_folder;
    static constexpr QSize side{26, 26};
};

} // namespace

TEST_F(ApplicationPictureProviderTest, ServesAPictureInTheSizeThatIsAskedFor)
{
    const QString path = picture({512, 512});

    EXPECT_TRUE(ApplicationPictureProvider::hasPicture(path));
    const QImage image = served(path);
    EXPECT_EQ(image.size(), side);
    EXPECT_EQ(image.pixelColor(13, 13), QColor(Qt::red));
}

TEST_F(ApplicationPictureProviderTest, ServesTheLetterForAPictureThatWouldFillTheMemory)
{
    const QString path = picture({2049, 16});

    EXPECT_FALSE(ApplicationPictureProvider::hasPicture(path));
    EXPECT_EQ(served(path), letterTile(u"Painter"_qs, side));
}

TEST_F(ApplicationPictureProviderTest, ServesTheLetterWhereThereIsNoPicture)
{
    QFile rubbish(m_folder.filePath(u"rubbish.png"_qs));
    ASSERT_TRUE(rubbish.open(QIODevice::WriteOnly));
    rubbish.write("no picture");
    rubbish.close();

    for (const QString &path : {rubbish.fileName(), m_folder.filePath(u"none.png"_qs), m_folder.path()}) {
        EXPECT_FALSE(ApplicationPictureProvider::hasPicture(path));
        EXPECT_EQ(served(path), letterTile(u"Painter"_qs, side));
    }
}

TEST_F(ApplicationPictureProviderTest, IsReadOnAThreadOfItsOwn)
{
    EXPECT_TRUE(ApplicationPictureProvider().flags() & QQmlImageProviderBase::ForceAsynchronousImageLoading);
}
