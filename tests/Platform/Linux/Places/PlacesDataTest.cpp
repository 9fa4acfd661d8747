#include "Platform/Linux/Places/PlacesData.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

const QList<PlaceTable> tables
    = {PlaceTable::UserCache, PlaceTable::UserLogs, PlaceTable::ContainerCache, PlaceTable::TemporaryFiles};

QList<PlacesData::Row> allRows()
{
    QList<PlacesData::Row> rows;
    for (const PlaceTable table : tables)
        rows += PlacesData::builtIn().rows.value(table);
    return rows;
}

QList<PlacesData::ListRow> allListRows()
{
    QList<PlacesData::ListRow> rows;
    for (const QList<PlacesData::ListRow> &list : PlacesData::builtIn().lists)
        rows += list;
    return rows;
}

QList<QByteArray> knownBases()
{
    QList<QByteArray> bases = {"",         "~",          "$cache",    "$config", "$data",     "$state", "$temporary",
                               "$desktop", "$documents", "$download", "$music",  "$pictures", "$videos"};
    for (const PlacesData::Variable &variable : PlacesData::builtIn().variables)
        bases.append(variable.name);
    return bases;
}

QByteArray text(const PlacesData::Place &place)
{
    return place.base + '/' + place.names.join('/');
}

bool isSentence(const QString &reason)
{
    return reason.size() > 10 && reason.front().isUpper() && reason.endsWith(u'.');
}

} // namespace

TEST(PlacesDataTest, GivesAReasonForEachRow)
{
    ASSERT_FALSE(allRows().isEmpty());
    for (const PlacesData::Row &row : allRows())
        EXPECT_TRUE(isSentence(row.reason)) << text(row.root).constData();
}

TEST(PlacesDataTest, GivesAReasonForEachRowOfAList)
{
    ASSERT_FALSE(allListRows().isEmpty());
    for (const PlacesData::ListRow &row : allListRows())
        EXPECT_TRUE(isSentence(row.reason)) << text(row.place).constData();
}

TEST(PlacesDataTest, GivesAReasonForEachKeptPlaceAndForEachThatIsNoRoot)
{
    const PlacesData &data = PlacesData::builtIn();
    ASSERT_FALSE(data.keep.isEmpty());
    ASSERT_FALSE(data.notRoots.isEmpty());
    for (const PlacesData::ReasonedPlace &kept : data.keep)
        EXPECT_TRUE(isSentence(kept.reason)) << text(kept.place).constData();
    for (const PlacesData::RefusedRoot &refused : data.notRoots)
        EXPECT_TRUE(isSentence(refused.reason)) << text(refused.place).constData();
}

TEST(PlacesDataTest, BeginsEachPlaceWithAFolderThatIsKnown)
{
    const PlacesData &data = PlacesData::builtIn();
    QList<PlacesData::Place> places = data.programRoots;
    for (const PlacesData::Row &row : allRows())
        places.append(row.root);
    for (const PlacesData::ReasonedPlace &kept : data.keep)
        places.append(kept.place);
    for (const PlacesData::RefusedRoot &refused : data.notRoots)
        places.append(refused.place);
    for (const PlacesData::ListRow &row : allListRows())
        places.append(row.place);

    for (const PlacesData::Place &place : places)
        EXPECT_THAT(knownBases(), testing::Contains(place.base)) << text(place).constData();
}

TEST(PlacesDataTest, OffersOnlyWhatIsNamedForCachesOrLogs)
{
    for (const PlacesData::Row &row : allRows()) {
        const QByteArray offered = row.suffix.isEmpty() ? text(row.root) : row.suffix;
        const QByteArray name = offered.endsWith('/') ? row.root.base : offered.mid(offered.lastIndexOf('/') + 1);
        EXPECT_THAT(name, testing::AnyOf("$cache", "cache", ".cache", "log", "logs")) << text(row.root).constData();
    }
}

TEST(PlacesDataTest, OffersOfBrowsersOnlyFoldersNamedForWhatTheyFetchAgain)
{
    for (const char *browser : {"com.google.Chrome", "org.mozilla.firefox", "com.brave.Browser",
                                "com.microsoft.edgemac", "com.operasoftware.Opera"}) {
        const auto rows = PlacesData::builtIn().lists.value(QLatin1String(browser));
        EXPECT_FALSE(rows.isEmpty()) << browser;
        for (const PlacesData::ListRow &row : rows) {
            EXPECT_THAT(row.place.names.last(),
                        testing::AnyOf("Cache", "Code Cache", "cache2", "startupCache", "safebrowsing", "thumbnails"))
                << text(row.place).constData();
            EXPECT_THAT(text(row.place).constData(),
                        testing::AnyOf(testing::StartsWith("$cache/"),
                                       testing::ContainsRegex("^~/\\.var/app/[^/]+/cache/"),
                                       testing::ContainsRegex("^~/snap/[^/]+/common/\\.cache/")));
        }
    }
}

TEST(PlacesDataTest, NamesForEachLanguageOnlyPlacesOfItsPrograms)
{
    const QHash<QString, QByteArrayList> programs = {
        {u"Python Runtime"_qs, {"python3", "python"}},
        {u"Java Runtime"_qs, {"java"}},
        {u"Go Runtime"_qs, {"go"}},
        {u"Node.js Runtime"_qs, {"node", "nodejs"}},
        {u"Rust Runtime"_qs, {"rustc"}},
        {u"Ruby Runtime"_qs, {"ruby"}},
        {u"PHP Runtime"_qs, {"php"}},
        {u"Flutter Runtime"_qs, {"flutter"}},
    };
    for (auto language = programs.begin(); language != programs.end(); ++language) {
        const auto rows = PlacesData::builtIn().lists.value(language.key());
        EXPECT_FALSE(rows.isEmpty()) << qPrintable(language.key());
        for (const PlacesData::ListRow &row : rows)
            EXPECT_TRUE(language.value().contains(row.place.names.last())) << text(row.place).constData();
    }
}

TEST(PlacesDataTest, NamesEachPlaceOnce)
{
    QList<QByteArray> seen;
    for (const PlacesData::ReasonedPlace &kept : PlacesData::builtIn().keep) {
        EXPECT_FALSE(seen.contains(text(kept.place))) << text(kept.place).constData();
        seen.append(text(kept.place));
    }
}

TEST(PlacesDataTest, SplitsAPlaceIntoItsBaseAndNames)
{
    const PlacesData::Place place = PlacesData::Place::parse("$cache/a/b*");
    EXPECT_EQ(place.base, "$cache");
    EXPECT_EQ(place.names, QList<QByteArray>({"a", "b*"}));

    const PlacesData::Place absolute = PlacesData::Place::parse("/var/tmp");
    EXPECT_EQ(absolute.base, "");
    EXPECT_EQ(absolute.names, QList<QByteArray>({"var", "tmp"}));
}
