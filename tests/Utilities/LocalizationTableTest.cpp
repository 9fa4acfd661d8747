#include "Utilities/LocalizationTable.h"
#include "Utilities/TextData.h"

#include <QDirIterator>
#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QSet>

#include <gmock/gmock.h>

using namespace Quillmere;
using testing::UnorderedElementsAre;

namespace {

constexpr int rowsOfTheScreens = 430;

const LocalizationTable &strings()
{
    return LocalizationTable::strings();
}

std::string text(const QString &key, const QString &language)
{
    return strings().text(key, language).value_or(u"(none)"_qs).toStdString();
}

/// The keys of a texts file as they stand in it, repeated ones included.
QStringList keysInFile(const QString &name)
{
    QFile file(name);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    static const QRegularExpression row(u"^\\s*\"([^\"]+)\"\\s*:\\s*\\{"_qs, QRegularExpression::MultilineOption);
    QStringList keys;
    auto match = row.globalMatch(QString::fromUtf8(file.readAll()));
    while (match.hasNext())
        keys.append(match.next().captured(1));
    return keys;
}

/// All that the program is built from, one file behind the other.
QByteArray sources()
{
    QByteArray text;
    QDirIterator files(QStringLiteral(QUILLMERE_SOURCES), {u"*.cpp"_qs, u"*.h"_qs, u"*.qml"_qs}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << file.fileName().toStdString();
        text += file.readAll();
    }
    return text;
}

} // namespace

TEST(LocalizationTableTest, HoldsEveryKeyOfTheScreensOnceInTheOrderOfItsFamilies)
{
    const QStringList expected = textKeys(u"keys.txt"_qs);

    EXPECT_EQ(expected.size(), rowsOfTheScreens);
    EXPECT_EQ(keysInFile(u":/texts/strings.json"_qs), expected);
    EXPECT_EQ(strings().keys().size(), rowsOfTheScreens);
}

TEST(LocalizationTableTest, HoldsAsManyKeysOfEachFamilyAsItShould)
{
    QMap<QString, int> counts;
    for (const QString &key : strings().keys())
        ++counts[key.section(u'.', 0, 0)];

    QMap<QString, int> expected;
    for (const QStringList &row : textData(u"families.tsv"_qs))
        expected[row.at(0)] = row.at(1).toInt();
    EXPECT_EQ(counts, expected);
}

TEST(LocalizationTableTest, HasExactlyThreeLanguagesInEveryRow)
{
    for (const LocalizationTable *table : {&strings(), &LocalizationTable::controls()}) {
        for (const QString &key : table->keys())
            EXPECT_THAT(table->languages(key), UnorderedElementsAre(u"en"_qs, u"es"_qs, u"ru"_qs)) << key.toStdString();
    }
}

TEST(LocalizationTableTest, SpeaksEnglishToTheLetter)
{
    const QList<QStringList> rows = textData(u"english.tsv"_qs);

    EXPECT_EQ(rows.size(), 408);
    for (const QStringList &row : rows)
        EXPECT_EQ(text(row.at(0), u"en"_qs), row.at(1).toStdString()) << row.at(0).toStdString();
}

TEST(LocalizationTableTest, SaysTheTellingRowsToTheLetterInAllLanguages)
{
    const QList<QStringList> rows = textData(u"telling.tsv"_qs);

    EXPECT_EQ(rows.size(), 30);
    for (const QStringList &row : rows) {
        EXPECT_EQ(text(row.at(0), u"en"_qs), row.at(1).toStdString()) << row.at(0).toStdString();
        EXPECT_EQ(text(row.at(0), u"es"_qs), row.at(2).toStdString()) << row.at(0).toStdString();
        EXPECT_EQ(text(row.at(0), u"ru"_qs), row.at(3).toStdString()) << row.at(0).toStdString();
    }
}

TEST(LocalizationTableTest, LooksUpKeysAndLanguagesExactlyAndCaseSensitively)
{
    EXPECT_EQ(text(u"nav.dashboard"_qs, u"en"_qs), "Dashboard");
    EXPECT_FALSE(strings().text(u"nav.Dashboard"_qs, u"en"_qs));
    EXPECT_FALSE(strings().text(u"nav.dashboard "_qs, u"en"_qs));
    EXPECT_FALSE(strings().text(u"nav"_qs, u"en"_qs));
    EXPECT_FALSE(strings().text(QString(), u"en"_qs));
    EXPECT_FALSE(strings().text(u"nav.dashboard"_qs, u"EN"_qs));
    EXPECT_FALSE(strings().text(u"nav.dashboard"_qs, u"system"_qs));
    EXPECT_FALSE(strings().text(u"nav.dashboard"_qs, QString()));
}

TEST(LocalizationTableTest, IsTheSameObjectWheneverItIsAskedFor)
{
    EXPECT_EQ(&LocalizationTable::strings(), &LocalizationTable::strings());
    EXPECT_EQ(&LocalizationTable::controls(), &LocalizationTable::controls());
}

TEST(LocalizationTableTest, SharesNoKeyBetweenScreensAndControls)
{
    const QStringList controls = keysInFile(u":/texts/controls.json"_qs);

    EXPECT_EQ(controls.size(), LocalizationTable::controls().keys().size());
    for (const QString &key : controls)
        EXPECT_FALSE(strings().text(key, u"en"_qs)) << key.toStdString();
}

TEST(LocalizationTableTest, HoldsNoTextOfControlsThatTheProgramNeverShows)
{
    const QByteArray text = sources();

    ASSERT_FALSE(LocalizationTable::controls().keys().isEmpty());
    for (const QString &key : LocalizationTable::controls().keys())
        EXPECT_TRUE(text.contains('"' + key.toUtf8() + '"')) << key.toStdString();
}

TEST(LocalizationTableTest, AnswersInEnglishWhereARowLacksTheLanguage)
{
    const auto table = LocalizationTable::fromJson(R"({"a": {"en": "tree", "ru": "дерево"}, "b": {"ru": "вода"}})");

    ASSERT_TRUE(table);
    EXPECT_EQ(table.value().textOrEnglish(u"a"_qs, u"ru"_qs), u"дерево"_qs);
    EXPECT_EQ(table.value().textOrEnglish(u"a"_qs, u"es"_qs), u"tree"_qs);
    EXPECT_EQ(table.value().text(u"a"_qs, u"es"_qs), std::nullopt);
    EXPECT_EQ(table.value().textOrEnglish(u"b"_qs, u"es"_qs), std::nullopt);
    EXPECT_EQ(table.value().textOrEnglish(u"c"_qs, u"es"_qs), std::nullopt);
}

class MalformedTextsTest : public testing::TestWithParam<const char *>
{
};

TEST_P(MalformedTextsTest, AreRefusedAsAWhole)
{
    const auto table = LocalizationTable::fromJson(GetParam());

    ASSERT_FALSE(table);
    EXPECT_EQ(table.failure().kind, Failure::Kind::Malformed);
    EXPECT_FALSE(table.failure().detail.isEmpty());
}

INSTANTIATE_TEST_SUITE_P(Forms, MalformedTextsTest,
                         testing::Values("", "[]", "{\"a\": {\"en\": \"tree\"}", "{\"a\": \"tree\"}",
                                         "{\"a\": {\"en\": 1}}", "{\"a\": {\"en\": null}}"));
