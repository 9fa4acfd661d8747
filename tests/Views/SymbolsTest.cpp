#include "Models/RiskLevel.h"
#include "Models/SidebarTab.h"
#include "Views/Support/SymbolImageProvider.h"
#include "Views/ViewsFixture.h"

#include <QDirIterator>
#include <QRegularExpression>
#include <QTest>

using namespace Quillmere;

namespace {

QStringList drawings()
{
    QStringList names = QDir(u":/symbols"_qs).entryList();
    for (QString &name : names)
        name.chop(4);
    return names;
}

/// What stands in quotes after a property that takes a symbol, in every file of a folder.
QStringList namedIn(const char *folder, const QString &suffix, const QString &pattern)
{
    const QRegularExpression mention(pattern);
    const QRegularExpression quoted(u"\"([a-z0-9.]+)\""_qs);
    QStringList names;
    QDirIterator files(QStringLiteral(QUILLMERE_SOURCE_DIR) + QLatin1String(folder), {suffix}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        auto lines = mention.globalMatch(QString::fromUtf8(file.readAll()));
        while (lines.hasNext()) {
            auto words = quoted.globalMatch(lines.next().captured());
            while (words.hasNext())
                names.append(words.next().captured(1));
        }
    }
    return names;
}

int inkedPixels(const QImage &image)
{
    int inked = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            inked += qAlpha(image.pixel(x, y)) > 60 ? 1 : 0;
    }
    return inked;
}

QImage render(const QString &id, int side)
{
    SymbolImageProvider provider;
    QSize size;
    return provider.requestImage(id, &size, QSize(side, side));
}

} // namespace

class SymbolFileTest : public testing::TestWithParam<const char *>
{
};

TEST_P(SymbolFileTest, IsThereAndReadsAt16Pixels)
{
    const QString name = QLatin1String(GetParam());

    EXPECT_TRUE(SymbolImageProvider::hasSymbol(name));
    EXPECT_GT(inkedPixels(render(name + u"?color=000000"_qs, 16)), 8);
}

INSTANTIATE_TEST_SUITE_P(
    NamedByRecordsMenusAndScreens, SymbolFileTest,
    testing::Values("app", "app.gift", "apple.logo", "archivebox", "archivebox.fill", "arrow.down.circle",
                    "arrow.up.circle", "bolt.fill", "bolt.trianglebadge.exclamationmark", "brain.head.profile",
                    "checkmark.circle.fill", "checkmark.shield", "checkmark.shield.fill", "checkmark.square",
                    "chevron.down", "chevron.left.forwardslash.chevron.right", "chevron.up", "circle.dotted", "clock",
                    "clock.arrow.circlepath", "cpu", "cup.and.saucer.fill", "doc", "doc.text",
                    "doc.text.magnifyingglass", "doc.zipper", "envelope.open", "exclamationmark.triangle",
                    "exclamationmark.triangle.fill", "externaldrive", "film", "film.stack.fill", "folder",
                    "folder.badge.gearshape", "gauge.medium", "gauge.with.dots.needle.67percent", "gear", "gearshape",
                    "globe", "hammer", "hammer.fill", "hand.raised.fill", "info.circle", "internaldrive", "iphone.gen3",
                    "leaf.circle.fill", "lock", "memorychip", "photo", "play.circle.fill", "play.rectangle.fill",
                    "power", "shippingbox", "shippingbox.fill", "square.grid.2x2", "terminal", "terminal.fill",
                    "trash.fill", "tray.and.arrow.down", "tray.and.arrow.up", "waveform", "wifi", "wifi.slash",
                    "wrench.adjustable.fill", "wrench.and.screwdriver", "xmark.octagon"));

TEST(SymbolsTest, EveryDrawingLeavesInkAt16Pixels)
{
    ASSERT_GT(drawings().size(), 60);
    for (const QString &name : drawings())
        EXPECT_GT(inkedPixels(render(name + u"?color=000000"_qs, 16)), 8) << name.toStdString();
}

TEST(SymbolsTest, EveryNameThatTheViewsUseHasADrawing)
{
    const QStringList named
        = namedIn("/src/Views", u"*.qml"_qs,
                  u"(?i)(?:symbol(?:Name)?|icon(?:Name)?|\\bname): [^\\n]*\"[^\\n]*(?:\\n *\\?[^\\n]*)*"_qs);

    EXPECT_TRUE(named.contains(u"search"_qs));
    for (const QString &name : named) {
        const bool isTextKey
            = name.startsWith(u"control.") || name.startsWith(u"nav.") || name.startsWith(u"promotion.");
        EXPECT_TRUE(isTextKey || SymbolImageProvider::hasSymbol(name)) << name.toStdString();
    }
}

TEST(SymbolsTest, EveryDestinationOfTheSidebarHasADrawing)
{
    for (const SidebarTab tab : allCases<SidebarTab>())
        EXPECT_TRUE(SymbolImageProvider::hasSymbol(icon(tab))) << icon(tab).toStdString();
}

TEST(SymbolsTest, DrawingsUseNoColourOfTheirOwn)
{
    const QRegularExpression foreign(u"#[0-9a-fA-F]{3}|rgb|url\\("_qs);
    for (const QString &name : drawings()) {
        QFile file(u":/symbols/%1.svg"_qs.arg(name));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        EXPECT_FALSE(QString::fromUtf8(file.readAll()).contains(foreign)) << name.toStdString();
    }
}

TEST(SymbolsTest, AnUnknownNameGivesNoInkAndNoWarning)
{
    const QImage image = render(u"no.such.symbol?color=000000"_qs, 16);

    EXPECT_EQ(image.size(), QSize(16, 16));
    EXPECT_EQ(inkedPixels(image), 0);
}

TEST(SymbolsTest, IsDrawnInTheColourAndAtTheSizeAskedFor)
{
    const QImage image = render(u"checkmark.circle.fill?color=ff0000"_qs, 48);

    EXPECT_EQ(image.size(), QSize(48, 48));
    EXPECT_EQ(image.pixelColor(24, 12), QColor(Qt::red));
}

TEST(SymbolsTest, ATranslucentColourThinsCrossingStrokesOnlyOnce)
{
    const QImage image = render(u"close?color=80000000"_qs, 48);

    EXPECT_EQ(image.pixelColor(24, 24).alpha(), 0x80);
}

class SymbolItemTest : public ViewsFixture
{
};

TEST_F(SymbolItemTest, ShowsNothingForAnUnknownOrEmptyNameWithoutAWarning)
{
    show("Symbol { name: 'no.such.symbol' }\nSymbol { name: '' }\nSymbol { objectName: 'known'; name: 'globe' }");

    EXPECT_EQ(item(u"known"_qs)->property("status").toInt(), 1);
}
