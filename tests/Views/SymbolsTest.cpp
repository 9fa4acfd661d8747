#include "Models/RiskLevel.h"
#include "Models/SidebarTab.h"
#include "Symbols/SymbolDrawing.h"
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

/// What stands in quotes in the last group of a pattern, or in all of it where it has no group, in the files below a
/// folder of src.
QStringList namedIn(const char *folder, const QStringList &suffixes, const QString &pattern)
{
    const QRegularExpression mention(pattern);
    const QRegularExpression quoted(u"\"([a-z0-9.]+)\""_qs);
    QStringList names;
    QDirIterator files(QStringLiteral(QUILLMERE_SOURCE_DIR) + QLatin1String(folder), suffixes, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        auto mentions = mention.globalMatch(QString::fromUtf8(file.readAll()));
        while (mentions.hasNext()) {
            auto words = quoted.globalMatch(mentions.next().captured(mention.captureCount()));
            while (words.hasNext())
                names.append(words.next().captured(1));
        }
    }
    return names;
}

/// How a table in C++ names its symbols.
struct TableCase
{
    const char *name;
    const char *pattern;
    qsizetype least; ///< So many are found; with fewer the pattern has gone stale.
};

const TableCase tables[] = {
    {"KindsOfFiles", R"(\{FileType::\w+, "[^"]*", u("[a-z0-9.]+"))", 10},
    {"SlicesOfADisk", R"(SliceColor::\w+, u("[a-z0-9.]+"))", 6},
    {"DeveloperGroups", R"(RiskLevel::\w+,\s*u("[a-z0-9.]+"),)", 9},
    {"CategoriesOfACleanup", R"(u"[\w.]*[dD]escription[\w.]*"(?:_qs)?,\s*u("[a-z0-9.]+"))", 6},
    {"EntriesOfTheMenuBar", R"(\b(?:information|figure|actionItem)\([^;]*?,\s*u("[a-z0-9.]+")_qs[,)])", 11},
    {"SingleCategories", R"(\bicon = u("[a-z0-9.]+"))", 1},
    {"FunctionsThatGiveASymbol", R"(\b(?:icon|symbol)\([^()]*\)(?: const)?\n\{[^}]*u"[^}]*\})", 13},
};

/// Where the ink of a drawing lies on the grid, with half a pixel of soft edge left out.
QRectF inkOf(const QString &name)
{
    constexpr int scale = 20;
    const QImage image = drawnSymbol(name, Qt::black, QSize(24 * scale, 24 * scale));
    QRect ink;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(image.pixel(x, y)) > 127)
                ink |= QRect(x, y, 1, 1);
        }
    }
    return {QPointF(ink.topLeft()) / scale, QSizeF(ink.size()) / scale};
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

    EXPECT_TRUE(hasSymbol(name));
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
        = namedIn("/src/Views", {u"*.qml"_qs},
                  u"(?i)(?:symbol(?:Name)?|icon(?:Name)?|\\bname): [^\\n]*\"[^\\n]*(?:\\n *\\?[^\\n]*)*"_qs);

    EXPECT_TRUE(named.contains(u"search"_qs));
    for (const QString &name : named) {
        const bool isTextKey
            = name.startsWith(u"control.") || name.startsWith(u"nav.") || name.startsWith(u"promotion.");
        EXPECT_TRUE(isTextKey || hasSymbol(name)) << name.toStdString();
    }
}

class SymbolTableTest : public testing::TestWithParam<TableCase>
{
};

TEST_P(SymbolTableTest, NamesOnlyWhatHasADrawing)
{
    const QStringList named = namedIn("/src", {u"*.cpp"_qs, u"*.h"_qs}, QString::fromLatin1(GetParam().pattern));

    EXPECT_GE(named.size(), GetParam().least) << named.join(u' ').toStdString();
    for (const QString &name : named)
        EXPECT_TRUE(hasSymbol(name)) << name.toStdString();
}

INSTANTIATE_TEST_SUITE_P(Tables, SymbolTableTest, testing::ValuesIn(tables),
                         [](const auto &info) { return info.param.name; });

TEST(SymbolsTest, EveryDrawingIsNamedSomewhere)
{
    const QStringList named = namedIn("/src", {u"*.cpp"_qs, u"*.h"_qs, u"*.qml"_qs}, u"\"[a-z0-9.]+\""_qs);

    for (const QString &name : drawings())
        EXPECT_TRUE(named.contains(name)) << name.toStdString();
}

TEST(SymbolsTest, DrawingsShareOneGridAndOneStrokeWithRoundEnds)
{
    // Where a stroke of the common width would close what it leaves open, or be too thin beside what is filled.
    const QHash<QString, QStringList> widthsOfTheirOwn = {
        {u"gear"_qs, {u"2.4"_qs}},
        {u"hammer.fill"_qs, {u"2.6"_qs}},
        {u"hand.raised.fill"_qs, {u"2.5"_qs}},
        {u"shippingbox.fill"_qs, {u"1.2"_qs}},
    };
    const QString head = u"<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"24\" height=\"24\" viewBox=\"0 0 24 24\" "
                         u"fill=\"none\" stroke=\"currentColor\" stroke-width=\"1.75\" stroke-linecap=\"round\" "
                         u"stroke-linejoin=\"round\">"_qs;
    const QRegularExpression ownStroke(u"stroke-(?:width|linecap|linejoin)=\"([^\"]*)\""_qs);
    for (const QString &name : drawings()) {
        QFile file(u":/symbols/%1.svg"_qs.arg(name));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QString drawing = QString::fromUtf8(file.readAll());
        EXPECT_TRUE(drawing.startsWith(head)) << name.toStdString();
        auto strokes = ownStroke.globalMatch(drawing.mid(head.size()));
        QStringList widths;
        while (strokes.hasNext())
            widths.append(strokes.next().captured(1));
        widths.removeDuplicates();
        EXPECT_EQ(widths, widthsOfTheirOwn.value(name)) << name.toStdString();
    }
}

TEST(SymbolsTest, DrawingsKeepClearOfTheEdgeOfTheGrid)
{
    // The middle of a stroke stays 3 from the edge.
    const QRectF room = QRectF(3, 3, 18, 18).adjusted(-1, -1, 1, 1);
    for (const QString &name : drawings()) {
        const QRectF ink = inkOf(name);
        EXPECT_TRUE(room.contains(ink)) << name.toStdString() << ": " << ink.left() << ", " << ink.top() << " to "
                                        << ink.right() << ", " << ink.bottom();
    }
}

TEST(SymbolsTest, EveryDestinationOfTheSidebarHasADrawing)
{
    for (const SidebarTab tab : allCases<SidebarTab>())
        EXPECT_TRUE(hasSymbol(icon(tab))) << icon(tab).toStdString();
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
    const QImage image = render(u"window.close?color=80000000"_qs, 48);

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
