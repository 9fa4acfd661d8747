#include "Utilities/LocalizationTable.h"
#include "Utilities/TextData.h"

#include <QRegularExpression>
#include <QSet>

#include <gtest/gtest.h>

#include <algorithm>

using namespace Quillmere;

namespace {

/// One row of either table, as it is read on screen.
struct Wording
{
    QString key;
    QString english;
    QString spanish;
    QString russian;

    [[nodiscard]] QStringList all() const { return {english, spanish, russian}; }
    [[nodiscard]] std::string described() const { return (key + u": "_qs + all().join(u" | "_qs)).toStdString(); }
};

Wording wordingOf(const LocalizationTable &table, const QString &key)
{
    return {key, table.text(key, u"en"_qs).value_or(QString()), table.text(key, u"es"_qs).value_or(QString()),
            table.text(key, u"ru"_qs).value_or(QString())};
}

QList<Wording> wordings()
{
    QList<Wording> rows;
    for (const LocalizationTable *table : {&LocalizationTable::strings(), &LocalizationTable::controls()}) {
        for (const QString &key : table->keys())
            rows.append(wordingOf(*table, key));
    }
    return rows;
}

bool has(const QString &text, const char *pattern)
{
    const auto options = QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption;
    const QRegularExpression expression(QString::fromUtf8(pattern), options);
    EXPECT_TRUE(expression.isValid()) << pattern;
    return expression.match(text).hasMatch();
}

/// What a text ends in, as far as it tells a sentence from a label, a question or a wait.
QString ending(const QString &text)
{
    if (text.endsWith(u"..."))
        return u"..."_qs;
    return QString(u".:?!"_qs).contains(text.back()) ? QString(text.back()) : QString();
}

/// Names that are written small do not count.
bool beginsSmall(const QString &text)
{
    static const QRegularExpression small(u"^[¿¡]?(?!iOS|macOS|mDNSResponder)\\p{Ll}"_qs);
    return small.match(text).hasMatch();
}

} // namespace

TEST(TextWordingTest, LeavesNoTextEmptyOrWithBlanksAroundIt)
{
    for (const Wording &row : wordings()) {
        for (const QString &text : row.all()) {
            EXPECT_FALSE(text.isEmpty()) << row.described();
            EXPECT_EQ(text, text.trimmed()) << row.described();
            EXPECT_FALSE(text.contains(u"  ")) << row.described();
        }
    }
}

TEST(TextWordingTest, HasNoPlaceholders)
{
    for (const Wording &row : wordings()) {
        for (const QString &text : row.all())
            EXPECT_FALSE(has(text, "%[0-9a-z@$]|\\{.*\\}|\\$\\(|<[a-z/]")) << row.described();
    }
}

TEST(TextWordingTest, WritesRussianInCyrillic)
{
    for (const Wording &row : wordings()) {
        const bool isOnlyAName = row.key == u"promotion.name";
        EXPECT_EQ(has(row.russian, "[а-яё]"), !isOnlyAName) << row.described();
    }
}

TEST(TextWordingTest, WritesNoWordInTwoAlphabets)
{
    for (const Wording &row : wordings()) {
        EXPECT_FALSE(has(row.russian, "[а-яё][a-z]|[a-z][а-яё]")) << row.described();
        EXPECT_FALSE(has(row.english + row.spanish, "[а-яё]")) << row.described();
    }
}

TEST(TextWordingTest, TranslatesToSpanishAllThatIsNotTheSameWord)
{
    const QSet<QString> sameWord = {u"settings.menuBar.mode.cpu"_qs,
                                    u"settings.menuBar.mode.ram"_qs,
                                    u"menu.cpu"_qs,
                                    u"menu.ram"_qs,
                                    u"tools.error"_qs,
                                    u"common.error"_qs,
                                    u"common.bytes"_qs,
                                    u"promotion.name"_qs};
    for (const Wording &row : wordings())
        EXPECT_EQ(row.spanish == row.english, sameWord.contains(row.key)) << row.described();
}

TEST(TextWordingTest, EndsEachLanguageInTheSameMark)
{
    // The Spanish warning states; the Russian abbreviations carry their point.
    const QSet<QString> apart
        = {u"tools.secureBlocked"_qs, u"cleanup.itemsCount"_qs, u"common.items"_qs, u"largeFiles.filesCount"_qs};
    for (const Wording &row : wordings()) {
        if (apart.contains(row.key))
            continue;
        EXPECT_EQ(ending(row.spanish), ending(row.english)) << row.described();
        EXPECT_EQ(ending(row.russian), ending(row.english)) << row.described();
    }
}

TEST(TextWordingTest, OpensSpanishQuestionsAndExclamations)
{
    for (const Wording &row : wordings()) {
        EXPECT_EQ(row.spanish.count(u'¿'), row.spanish.count(u'?')) << row.described();
        EXPECT_EQ(row.spanish.count(u'¡'), row.spanish.count(u'!')) << row.described();
    }
}

TEST(TextWordingTest, BeginsSmallInEveryLanguageWhereANumberStandsBefore)
{
    for (const Wording &row : wordings()) {
        EXPECT_EQ(beginsSmall(row.spanish), beginsSmall(row.english)) << row.described();
        EXPECT_EQ(beginsSmall(row.russian), beginsSmall(row.english)) << row.described();
    }
}

TEST(TextWordingTest, KeepsButtonsShortInEachLanguage)
{
    for (const QString &key : textKeys(u"buttons.txt"_qs)) {
        const Wording row = wordingOf(LocalizationTable::strings(), key);
        const auto longest = std::max(row.english.size() * 16 / 10, row.english.size() + 9);
        EXPECT_FALSE(row.english.isEmpty()) << row.described();
        EXPECT_LE(row.spanish.size(), longest) << row.described();
        EXPECT_LE(row.russian.size(), longest) << row.described();
    }
}

TEST(TextWordingTest, NamesTheHealthOfTheSystemInTheGenderOfItsStates)
{
    const Wording health = wordingOf(LocalizationTable::strings(), u"dashboard.healthOverview"_qs);

    for (const QString &state : {u"good"_qs, u"critical"_qs}) {
        const Wording row = wordingOf(LocalizationTable::strings(), u"dashboard.status."_qs + state);
        EXPECT_TRUE(row.spanish.endsWith(u'o')) << row.described();
        EXPECT_TRUE(has(row.russian, "[ое]е$")) << row.described();
    }
    EXPECT_TRUE(has(health.spanish, "^\\w+o\\b")) << health.described();
    EXPECT_TRUE(has(health.russian, "^\\w+ие\\b")) << health.described();
}

/// The same text heads a column, names a figure in each row and stands in the menu of orders.
TEST(TextWordingTest, HeadsFiguresWithWhatTheyMeasureAndNotWithAComparison)
{
    for (const QString &key : {u"dashboard.topCPU"_qs, u"dashboard.topRAM"_qs}) {
        const Wording row = wordingOf(LocalizationTable::strings(), key);
        EXPECT_FALSE(has(row.spanish, "\\bmás\\b")) << row.described();
        EXPECT_FALSE(has(row.russian, "\\bтоп\\b")) << row.described();
    }
}

TEST(TextWordingTest, SaysOfSpaceInSpanishThatItIsFreedAndNotThatItIsCleaned)
{
    for (const Wording &row : wordings())
        EXPECT_FALSE(has(row.spanish, "espacio limpi")) << row.described();
}

/// A thing and the word that stands for it in each language.
struct Term
{
    const char *name;
    const char *english;
    const char *spanish;
    const char *russian;
    QSet<QString> otherwise = {}; ///< Keys where the English word means something else, or another word says it.
};

class TermTest : public testing::TestWithParam<Term>
{
};

TEST_P(TermTest, HasOneWordInEachLanguage)
{
    const Term &term = GetParam();
    int found = 0;
    for (const Wording &row : wordings()) {
        if (!has(row.english, term.english) || term.otherwise.contains(row.key))
            continue;
        ++found;
        EXPECT_TRUE(has(row.spanish, term.spanish)) << row.described();
        EXPECT_TRUE(has(row.russian, term.russian)) << row.described();
    }
    EXPECT_GE(found, 3);
}

INSTANTIATE_TEST_SUITE_P(
    Terms, TermTest,
    testing::Values(
        Term{"Application", "\\bapp(lication)?s?\\b", "aplicaci|\\bapps?\\b", "приложени", {u"applications.scan"_qs}},
        Term{"Awake", "^keep awake(:| \\()", "mantener activo", "без сна"},
        Term{"Browser", "browser", "navegador", "браузер"}, Term{"Cache", "cache", "caché", "кэш"},
        Term{"Clean", "\\bclean", "limp", "очи[щс]", {u"developer.installed.keep"_qs, u"history.detail.cleaned"_qs}},
        Term{"Drive", "\\bdrive\\b", "unidad", "диск", {u"settings.scanICloud"_qs}},
        Term{"Driver", "\\bdrivers\\b", "controlador", "драйвер"},
        Term{"Folder", "\\bfolders?\\b|director", "carpeta", "пап"}, Term{"History", "history", "historial", "истори"},
        Term{"Leftover", "leftover|residual", "resto", "остат"}, Term{"Log", "\\blogs?\\b", "registro", "журнал"},
        Term{"Overwrite", "overwrite", "sobrescri", "перезапис"},
        Term{"Remove", "remov(?!able)|delet", "elimin", "удал"},
        Term{"Scan", "\\bscan", "analiz|analic|análisis", "скан"}, Term{"Setting", "setting", "ajuste", "настро"},
        Term{"Starting", "^starting\\b", "iniciando", "запуск"},
        Term{"Startup", "startup", "inicio", "автозагрузк", {u"disk.systemWarning"_qs}},
        Term{"Traffic", "traffic", "tráfico", "трафик"}, Term{"Trash", "\\btrash\\b", "Papelera", "Корзин"},
        Term{"Volume", "volume", "volumen|volúmenes", "том"}),
    [](const auto &info) { return info.param.name; });
