#include "Platform/Linux/Tray/StatusItemIcon.h"

#include <QImage>

#include <gtest/gtest.h>

#include <algorithm>

using namespace Quillmere;

namespace {

/// How many pixels are nearly white.
int inkOf(const QImage &picture)
{
    int ink = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            ink += picture.pixelColor(x, y).lightness() > 200 && picture.pixelColor(x, y).alpha() > 200 ? 1 : 0;
    }
    return ink;
}

/// Rows from the first to the last that hold ink.
int heightOfInk(const QImage &picture)
{
    int first = picture.height();
    int last = -1;
    for (int y = 0; y < picture.height(); ++y) {
        if (inkOf(picture.copy(0, y, picture.width(), 1)) == 0)
            continue;
        first = std::min(first, y);
        last = y;
    }
    return last - first + 1;
}

} // namespace

class StatusItemIconTest : public testing::TestWithParam<int>
{
};

TEST_P(StatusItemIconTest, IsDrawnAtThePixelsAskedForAtBothRatios)
{
    for (const char *title : {"", "7%", "42%", "100%"}) {
        const QIcon icon = statusItemIcon(QString::fromLatin1(title));
        for (const int ratio : {1, 2}) {
            const QPixmap pixmap = icon.pixmap(QSize(GetParam(), GetParam()), ratio);

            EXPECT_EQ(pixmap.size(), QSize(GetParam(), GetParam()) * ratio) << title;
            EXPECT_EQ(pixmap.devicePixelRatio(), ratio) << title;
            EXPECT_GT(inkOf(pixmap.toImage()), 0) << title;
        }
    }
}

TEST_P(StatusItemIconTest, HasAGroundOfItsOwnBehindTheFigure)
{
    const QImage picture = statusItemPicture(u"42%"_qs, GetParam());

    EXPECT_EQ(picture.pixelColor(GetParam() / 2, 0).alpha(), 255);
    EXPECT_EQ(picture.pixelColor(0, GetParam() / 2).alpha(), 255);
    EXPECT_LT(picture.pixelColor(GetParam() / 2, 0).lightness(), 128);
}

TEST_P(StatusItemIconTest, FillsAboutHalfOfTheSquareWithDigits)
{
    for (const char *title : {"7%", "42%", "100%"}) {
        const int height = heightOfInk(statusItemPicture(QString::fromLatin1(title), GetParam()));

        EXPECT_GE(height, GetParam() * 0.4) << title;
        EXPECT_LE(height, GetParam() * 0.8) << title;
    }
}

TEST_P(StatusItemIconTest, DrawsEachFigureDifferently)
{
    QList<QImage> pictures;
    for (int value = 0; value <= 100; ++value) {
        const QImage picture = statusItemPicture(QString::number(value) + u'%', GetParam());

        EXPECT_FALSE(pictures.contains(picture)) << value;
        pictures.append(picture);
    }
}

INSTANTIATE_TEST_SUITE_P(Sides, StatusItemIconTest, testing::ValuesIn(statusItemIconSides()),
                         testing::PrintToStringParamName());
