#include "Utilities/ByteCountFormatter.h"

#include "Fakes/PretendUserDefaults.h"
#include "Utilities/LocalizationManager.h"

#include <gtest/gtest.h>

#include <limits>

using namespace Quillmere;

namespace {

constexpr qint64 most = std::numeric_limits<qint64>::max();
constexpr qint64 least = std::numeric_limits<qint64>::min();

} // namespace

struct ByteCountCase
{
    const char *name;
    qint64 bytes;
    const char16_t *file;
    const char16_t *memory;
};

class ByteCountTest : public testing::TestWithParam<ByteCountCase>
{
};

TEST_P(ByteCountTest, IsWrittenInBothStyles)
{
    const ByteCountCase &given = GetParam();
    EXPECT_EQ(formatByteCount(given.bytes, ByteCountStyle::File, Language::English), QString::fromUtf16(given.file));
    EXPECT_EQ(formatByteCount(given.bytes, ByteCountStyle::Memory, Language::English),
              QString::fromUtf16(given.memory));
}

INSTANTIATE_TEST_SUITE_P(
    English, ByteCountTest,
    testing::Values(
        ByteCountCase{"Nothing", 0, u"Zero KB", u"Zero KB"}, ByteCountCase{"OneByte", 1, u"1 byte", u"1 byte"},
        ByteCountCase{"MinusOneByte", -1, u"-1 byte", u"-1 byte"}, ByteCountCase{"TwoBytes", 2, u"2 bytes", u"2 bytes"},
        ByteCountCase{"HalfAThousand", 499, u"499 bytes", u"499 bytes"},
        ByteCountCase{"JustBelowAThousand", 999, u"999 bytes", u"999 bytes"},
        ByteCountCase{"AThousand", 1000, u"1 KB", u"1,000 bytes"},
        ByteCountCase{"JustBelowTheBinaryBase", 1023, u"1 KB", u"1,023 bytes"},
        ByteCountCase{"TheBinaryBase", 1024, u"1 KB", u"1 KB"},
        ByteCountCase{"TwelveThousand", 11999, u"12 KB", u"12 KB"},
        ByteCountCase{"HundredsOfThousands", 900000, u"900 KB", u"879 KB"},
        ByteCountCase{"LastThatStaysKilobytes", 999499, u"999 KB", u"976 KB"},
        ByteCountCase{"FirstThatRoundsIntoMegabytes", 999500, u"1 MB", u"976 KB"},
        ByteCountCase{"JustBelowAMillion", 999999, u"1 MB", u"977 KB"},
        ByteCountCase{"FourDigitsOfBinaryKilobytes", 1040000, u"1 MB", u"1,016 KB"},
        ByteCountCase{"LastThatStaysBinaryKilobytes", 1048063, u"1 MB", u"1,023 KB"},
        ByteCountCase{"FirstThatRoundsIntoBinaryMegabytes", 1048064, u"1 MB", u"1 MB"},
        ByteCountCase{"Megabytes", 12345678, u"12.3 MB", u"11.8 MB"},
        ByteCountCase{"HundredsOfMegabytes", 123456789, u"123.5 MB", u"117.7 MB"},
        ByteCountCase{"MostMegabytesWithADigit", 999900000, u"999.9 MB", u"953.6 MB"},
        ByteCountCase{"LastThatStaysMegabytes", 999949999, u"999.9 MB", u"953.6 MB"},
        ByteCountCase{"FirstThatRoundsIntoGigabytes", 999950000, u"1 GB", u"953.6 MB"},
        ByteCountCase{"FirstThatRoundsIntoBinaryGigabytes", 1073689396, u"1.07 GB", u"1 GB"},
        ByteCountCase{"Gigabytes", 1234567898, u"1.23 GB", u"1.15 GB"},
        ByteCountCase{"TensOfGigabytes", 12345678987, u"12.35 GB", u"11.5 GB"},
        ByteCountCase{"FinalZeroDropped", 1200000000, u"1.2 GB", u"1.12 GB"},
        ByteCountCase{"ZeroInTheMiddleKept", 1050000000, u"1.05 GB", u"1,001.4 MB"},
        ByteCountCase{"FirstThatRoundsIntoTerabytes", 999995000000, u"1 TB", u"931.32 GB"},
        ByteCountCase{"Petabytes", 5000000000000000, u"5 PB", u"4.44 PB"},
        ByteCountCase{"MinusAThousandOrSo", -1023, u"-1 KB", u"-1,023 bytes"},
        ByteCountCase{"MinusTheBinaryBase", -1024, u"-1 KB", u"-1 KB"},
        ByteCountCase{"MinusGigabytes", -1234567898, u"-1.23 GB", u"-1.15 GB"},
        ByteCountCase{"TheMost", most, u"9.22 EB", u"8 EB"}, ByteCountCase{"TheLeast", least, u"-9.22 EB", u"-8 EB"},
        ByteCountCase{"TieOfKilobytesAwayFromZero", 2500, u"3 KB", u"2 KB"},
        ByteCountCase{"TieOfMegabytesAwayFromZero", 1250000, u"1.3 MB", u"1.2 MB"},
        ByteCountCase{"NegativeTieAwayFromZero", -2500, u"-3 KB", u"-2 KB"}),
    [](const auto &info) { return info.param.name; });

struct LanguageByteCountCase
{
    const char *name;
    Language language;
    qint64 bytes;
    const char16_t *file;
    const char16_t *memory;
};

class LanguageByteCountTest : public testing::TestWithParam<LanguageByteCountCase>
{
};

TEST_P(LanguageByteCountTest, FollowsTheLanguagesNotation)
{
    const LanguageByteCountCase &given = GetParam();
    EXPECT_EQ(formatByteCount(given.bytes, ByteCountStyle::File, given.language), QString::fromUtf16(given.file));
    EXPECT_EQ(formatByteCount(given.bytes, ByteCountStyle::Memory, given.language), QString::fromUtf16(given.memory));
}

INSTANTIATE_TEST_SUITE_P(
    Languages, LanguageByteCountTest,
    testing::Values(LanguageByteCountCase{"SpanishNothing", Language::Spanish, 0, u"Cero KB", u"Cero KB"},
                    LanguageByteCountCase{"SpanishOneByte", Language::Spanish, 1, u"1 byte", u"1 byte"},
                    LanguageByteCountCase{"SpanishFourDigitsStandTogether", Language::Spanish, 1000, u"1 KB",
                                          u"1000 bytes"},
                    LanguageByteCountCase{"SpanishDecimalComma", Language::Spanish, 1500000, u"1,5 MB", u"1,4 MB"},
                    LanguageByteCountCase{"RussianNothing", Language::Russian, 0, u"Ноль КБ", u"Ноль КБ"},
                    LanguageByteCountCase{"RussianOneByte", Language::Russian, 1, u"1 байт", u"1 байт"},
                    LanguageByteCountCase{"RussianTwoBytes", Language::Russian, 2, u"2 байта", u"2 байта"},
                    LanguageByteCountCase{"RussianFiveBytes", Language::Russian, 5, u"5 байт", u"5 байт"},
                    LanguageByteCountCase{"RussianTwelveBytes", Language::Russian, 12, u"12 байт", u"12 байт"},
                    LanguageByteCountCase{"RussianTwentyOneBytes", Language::Russian, 21, u"21 байт", u"21 байт"},
                    LanguageByteCountCase{"RussianTwentyTwoBytes", Language::Russian, 22, u"22 байта", u"22 байта"},
                    LanguageByteCountCase{"RussianGroup", Language::Russian, 1000, u"1 КБ", u"1\u00A0000 байт"},
                    LanguageByteCountCase{"RussianDecimalComma", Language::Russian, 1500000, u"1,5 МБ", u"1,4 МБ"},
                    LanguageByteCountCase{"RussianExabytes", Language::Russian, most, u"9,22 ЭБ", u"8 ЭБ"}),
    [](const auto &info) { return info.param.name; });

TEST(CompactByteCountTest, LosesEveryBlank)
{
    EXPECT_EQ(formatCompactByteCount(12345678, Language::English), u"12.3MB"_qs);
    EXPECT_EQ(formatCompactByteCount(0, Language::English), u"ZeroKB"_qs);
    EXPECT_EQ(formatCompactByteCount(2, Language::Russian), u"2байта"_qs);
}

TEST(ByteCountFormatterTest, SpeaksTheLanguageOfTheScreensWhenNoneIsNamed)
{
    Localizer localizer(std::make_shared<PretendUserDefaults>(), [] { return u"ru"_qs; });
    SharedInstance<Localizer>::install(&localizer);

    EXPECT_EQ(formatByteCount(1500), u"2 КБ"_qs);
    EXPECT_EQ(formatMemoryByteCount(1023), u"1\u00A0023 байта"_qs);
    EXPECT_EQ(formatCompactByteCount(1500), u"2КБ"_qs);

    SharedInstance<Localizer>::install(nullptr);
}
