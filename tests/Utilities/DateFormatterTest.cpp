#include "Utilities/DateFormatter.h"

#include "Fakes/EnvironmentVariable.h"
#include "Fakes/PretendUserDefaults.h"
#include "Utilities/LocalizationManager.h"

#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

const QDateTime secondOfJanuary({2024, 1, 2}, {15, 4, 5}, Qt::UTC);

DateStyle styleOf(const char *locale)
{
    return {QLocale(QString::fromLatin1(locale)), QTimeZone::utc()};
}

} // namespace

struct DateCase
{
    const char *name;
    const char *locale;
    const char16_t *shortText;
    const char16_t *abbreviated;
    const char16_t *dateAlone;
};

class DateTest : public testing::TestWithParam<DateCase>
{
};

TEST_P(DateTest, IsWrittenInTheHabitsOfTheRegion)
{
    const DateStyle style = styleOf(GetParam().locale);

    EXPECT_EQ(ShortDateFormatter(style).format(secondOfJanuary), QString::fromUtf16(GetParam().shortText));
    EXPECT_EQ(formatAbbreviatedDateAndTime(secondOfJanuary, style), QString::fromUtf16(GetParam().abbreviated));
    EXPECT_EQ(formatAbbreviatedDate(secondOfJanuary, style), QString::fromUtf16(GetParam().dateAlone));
}

INSTANTIATE_TEST_SUITE_P(
    Regions, DateTest,
    testing::Values(
        DateCase{"American", "en_US", u"1/2/24, 3:04\u202FPM", u"Jan 2, 2024 at 3:04\u202FPM", u"Jan 2, 2024"},
        DateCase{"British", "en_GB", u"02/01/2024, 15:04", u"2 Jan 2024 at 15:04", u"2 Jan 2024"},
        DateCase{"Spanish", "es_ES", u"2/1/24, 15:04", u"2 ene 2024, 15:04", u"2 ene 2024"},
        DateCase{"Russian", "ru_RU", u"02.01.2024, 15:04", u"2 янв. 2024\u202Fг., 15:04", u"2 янв. 2024\u202Fг."},
        DateCase{"French", "fr_FR", u"02/01/2024 15:04", u"02/01/2024, 15:04", u"02/01/2024"},
        DateCase{"Japanese", "ja_JP", u"2024/01/02 15:04", u"2024/01/02, 15:04", u"2024/01/02"},
        DateCase{"Vietnamese", "vi_VN", u"15:04 02/01/2024", u"02/01/2024, 15:04", u"02/01/2024"},
        DateCase{"German", "de_DE", u"02.01.24, 15:04", u"02.01.24, 15:04", u"02.01.24"}),
    [](const auto &info) { return info.param.name; });

TEST(DateFormatterTest, WritesTheMorningHourOfOneDigitInSpanish)
{
    const QDateTime morning({2024, 1, 2}, {9, 5}, Qt::UTC);

    EXPECT_EQ(ShortDateFormatter(styleOf("es_ES")).format(morning), u"2/1/24, 9:05"_qs);
}

TEST(DateFormatterTest, CallsTheNinthMonthTheSameInAllEnglish)
{
    const QDateTime ninth({2024, 9, 2}, {9, 5}, Qt::UTC);

    EXPECT_EQ(formatAbbreviatedDate(ninth, styleOf("en_GB")), u"2 Sep 2024"_qs);
    EXPECT_EQ(formatAbbreviatedDate(ninth, styleOf("en_US")), u"Sep 2, 2024"_qs);
}

TEST(DateFormatterTest, WritesTheTimeOfTheGivenZone)
{
    const DateStyle style = {QLocale(u"en_GB"_qs), QTimeZone(5 * 3600 + 1800)};

    EXPECT_EQ(ShortDateFormatter(style).format(secondOfJanuary), u"02/01/2024, 20:34"_qs);
}

TEST(DateFormatterTest, CrossesMidnightWithTheZone)
{
    const DateStyle style = {QLocale(u"en_GB"_qs), QTimeZone(10 * 3600)};

    EXPECT_EQ(formatAbbreviatedDate(secondOfJanuary, style), u"3 Jan 2024"_qs);
}

TEST(DateFormatterTest, KeepsTheUsersRegionWhereItSpeaksTheLanguageOfTheScreens)
{
    EXPECT_EQ(DateStyle::localeOfScreens(Language::English, QLocale(u"en_GB"_qs)), QLocale(u"en_GB"_qs));
    EXPECT_EQ(DateStyle::localeOfScreens(Language::Spanish, QLocale(u"es_MX"_qs)), QLocale(u"es_MX"_qs));
    EXPECT_EQ(DateStyle::localeOfScreens(Language::English, QLocale(u"de_DE"_qs)), QLocale(u"en_US"_qs));
    EXPECT_EQ(DateStyle::localeOfScreens(Language::Spanish, QLocale(u"en_US"_qs)), QLocale(u"es_ES"_qs));
    EXPECT_EQ(DateStyle::localeOfScreens(Language::Russian, QLocale(u"en_US"_qs)), QLocale(u"ru_RU"_qs));
}

TEST(DateFormatterTest, TakesTheLocaleOfTimesBeforeThatOfTexts)
{
    const EnvironmentVariable all("LC_ALL", "");
    const EnvironmentVariable times("LC_TIME", "en_GB.UTF-8");
    const EnvironmentVariable texts("LANG", "de_DE.UTF-8");

    EXPECT_EQ(userDateLocale(), QLocale(u"en_GB"_qs));
}

TEST(DateFormatterTest, TakesTheLocaleOfEverythingBeforeThatOfTimes)
{
    const EnvironmentVariable all("LC_ALL", "ru_RU.UTF-8");
    const EnvironmentVariable times("LC_TIME", "en_GB.UTF-8");

    EXPECT_EQ(userDateLocale(), QLocale(u"ru_RU"_qs));
}

TEST(DateFormatterTest, IsAmericanWhereTheEnvironmentNamesNoLanguage)
{
    const EnvironmentVariable all("LC_ALL", "C.UTF-8");

    EXPECT_EQ(userDateLocale(), QLocale(u"en_US"_qs));
    EXPECT_EQ(ShortDateFormatter({userDateLocale(), QTimeZone::utc()}).format(secondOfJanuary),
              u"1/2/24, 3:04\u202FPM"_qs);
}

TEST(DateFormatterTest, SpeaksTheLanguageOfTheScreensInLists)
{
    const EnvironmentVariable all("LC_ALL", "en_US.UTF-8");
    Localizer localizer(std::make_shared<PretendUserDefaults>(), [] { return u"es"_qs; });
    SharedInstance<Localizer>::install(&localizer);

    const QString list = formatAbbreviatedDate(QDateTime({2024, 1, 15}, {12, 0}, Qt::LocalTime));
    const QString file
        = ShortDateFormatter(DateStyle::ofUser()).format(QDateTime({2024, 1, 15}, {12, 0}, Qt::LocalTime));

    EXPECT_EQ(list, u"15 ene 2024"_qs);
    EXPECT_EQ(file, u"1/15/24, 12:00\u202FPM"_qs);
    SharedInstance<Localizer>::install(nullptr);
}
