#include "Utilities/JsonDocument.h"

#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

bool isAccepted(const QByteArray &text)
{
    return JsonDocument::parse(text).isOk();
}

QByteArray nested(int depth)
{
    return QByteArray(depth, '[') + QByteArray(depth, ']');
}

std::optional<qint64> integer(const QByteArray &text)
{
    return JsonDocument::parse(text).value().root().integer();
}

std::optional<double> number(const QByteArray &text)
{
    return JsonDocument::parse(text).value().root().number();
}

std::optional<QString> string(const QByteArray &text)
{
    return JsonDocument::parse(text).value().root().string();
}

} // namespace

struct JsonCase
{
    const char *name;
    QByteArray text;
};

class AcceptedJsonTest : public testing::TestWithParam<JsonCase>
{
};

TEST_P(AcceptedJsonTest, IsRead)
{
    EXPECT_TRUE(isAccepted(GetParam().text));
}

INSTANTIATE_TEST_SUITE_P(
    Texts, AcceptedJsonTest,
    testing::Values(JsonCase{"EmptyArray", "[]"}, JsonCase{"EmptyObject", "{}"}, JsonCase{"ScalarText", "\"a\""},
                    JsonCase{"ScalarNumber", "7"}, JsonCase{"ScalarNull", "null"},
                    JsonCase{"BlanksAround", " \t\r\n[ ] \n"}, JsonCase{"TrailingCommaInArray", "[1,]"},
                    JsonCase{"TrailingCommaInObject", "{\"a\":1,}"}, JsonCase{"DuplicateKeys", "{\"a\":1,\"a\":2}"},
                    JsonCase{"EscapedSlash", "\"\\/\""}, JsonCase{"SurrogatePair", "\"\\ud83d\\ude00\""},
                    JsonCase{"EscapedZero", "\"\\u0000\""}, JsonCase{"ByteOrderMark", "\xEF\xBB\xBF[]"}),
    [](const auto &info) { return info.param.name; });

class RefusedJsonTest : public testing::TestWithParam<JsonCase>
{
};

TEST_P(RefusedJsonTest, IsMalformed)
{
    const Result<JsonDocument> result = JsonDocument::parse(GetParam().text);

    ASSERT_FALSE(result);
    EXPECT_EQ(result.failure().kind, Failure::Kind::Malformed);
    EXPECT_FALSE(result.failure().detail.isEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Texts, RefusedJsonTest,
    testing::Values(
        JsonCase{"Nothing", ""}, JsonCase{"BlanksAlone", " \n"}, JsonCase{"LoneCommaInArray", "[,]"},
        JsonCase{"LoneCommaInObject", "{,}"}, JsonCase{"TwoTrailingCommas", "[1,,]"}, JsonCase{"TwoValues", "[] []"},
        JsonCase{"ZeroByteBehind", QByteArray("[]\0x", 4)}, JsonCase{"ZeroByteAtTheVeryEnd", QByteArray("[]\0", 3)},
        JsonCase{"LineComment", "[] // a"}, JsonCase{"BlockComment", "[/* a */]"}, JsonCase{"SingleQuotes", "['a']"},
        JsonCase{"LeadingZero", "01"}, JsonCase{"PointWithoutFraction", "1."}, JsonCase{"PointWithoutWhole", ".5"},
        JsonCase{"PlusSign", "+1"}, JsonCase{"MinusAlone", "-"}, JsonCase{"NotANumber", "NaN"},
        JsonCase{"Infinity", "Infinity"}, JsonCase{"Hexadecimal", "0x10"}, JsonCase{"UppercaseTrue", "True"},
        JsonCase{"LoneHighSurrogate", "\"\\ud83d\""}, JsonCase{"LoneLowSurrogate", "\"\\ude00\""},
        JsonCase{"LoneLowSurrogateInAKey", "{\"\\ude00\":1}"}, JsonCase{"HighSurrogateTwice", "\"\\ud83d\\ud83d\""},
        JsonCase{"SurrogateAsBytes", "\"\xED\xB0\x80\""}, JsonCase{"BrokenUtf8", "\"\xC3\""},
        JsonCase{"OverlongUtf8", "\"\xC0\xAF\""}, JsonCase{"RawLineFeedInText", "\"a\nb\""},
        JsonCase{"UnknownEscape", "\"\\x\""}, JsonCase{"OpenText", "\"a"}, JsonCase{"OpenArray", "[1"},
        JsonCase{"OpenObject", "{\"a\":1"}, JsonCase{"MissingValue", "{\"a\":}"}, JsonCase{"KeyWithoutQuotes", "{a:1}"},
        JsonCase{"MarkAlone", "\xEF\xBB\xBF"}, JsonCase{"OddBytesOfUtf16", QByteArray("\xFE\xFF\0[\0]\0", 7)},
        JsonCase{"LoneSurrogateInUtf16", QByteArray("\xFE\xFF\0\"\xD8\x3D\0\"", 8)}),
    [](const auto &info) { return info.param.name; });

TEST(JsonDocumentTest, NestsFiveHundredAndTwelveContainersAndNoMore)
{
    EXPECT_TRUE(isAccepted(nested(256)));
    EXPECT_TRUE(isAccepted(nested(512)));
    EXPECT_FALSE(isAccepted(nested(513)));
    EXPECT_FALSE(isAccepted(nested(1'000'000)));
}

struct EncodingCase
{
    const char *name;
    QByteArray bytes;
};

class JsonEncodingTest : public testing::TestWithParam<EncodingCase>
{
};

TEST_P(JsonEncodingTest, IsRecognised)
{
    const Result<JsonDocument> result = JsonDocument::parse(GetParam().bytes);

    ASSERT_TRUE(result);
    EXPECT_EQ(result.value().root().string(), u"ж"_qs);
}

INSTANTIATE_TEST_SUITE_P(
    Encodings, JsonEncodingTest,
    testing::Values(EncodingCase{"Utf8", "\"\xD0\xB6\""}, EncodingCase{"Utf8WithMark", "\xEF\xBB\xBF\"\xD0\xB6\""},
                    EncodingCase{"Utf16BigEndianWithMark", QByteArray("\xFE\xFF\0\"\x04\x36\0\"", 8)},
                    EncodingCase{"Utf16LittleEndianWithMark", QByteArray("\xFF\xFE\"\0\x36\x04\"\0", 8)},
                    EncodingCase{"Utf16BigEndian", QByteArray("\0\"\x04\x36\0\"", 6)},
                    EncodingCase{"Utf16LittleEndian", QByteArray("\"\0\x36\x04\"\0", 6)},
                    EncodingCase{"Utf32BigEndianWithMark", QByteArray("\0\0\xFE\xFF\0\0\0\"\0\0\x04\x36\0\0\0\"", 16)},
                    EncodingCase{"Utf32LittleEndianWithMark",
                                 QByteArray("\xFF\xFE\0\0\"\0\0\0\x36\x04\0\0\"\0\0\0", 16)},
                    EncodingCase{"Utf32BigEndian", QByteArray("\0\0\0\"\0\0\x04\x36\0\0\0\"", 12)},
                    EncodingCase{"Utf32LittleEndian", QByteArray("\"\0\0\0\x36\x04\0\0\"\0\0\0", 12)}),
    [](const auto &info) { return info.param.name; });

TEST(JsonDocumentTest, ReadsAOneDigitTextInUtf16)
{
    EXPECT_EQ(integer(QByteArray("7\0", 2)), 7);
    EXPECT_EQ(integer(QByteArray("\0"
                                 "7",
                                 2)),
              7);
}

TEST(JsonDocumentTest, UndoesEveryEscape)
{
    EXPECT_EQ(string(R"("\"\\\/\b\f\n\r\t\u0416\ud83d\ude00")"), u"\"\\/\b\f\n\r\t\u0416\U0001F600"_qs);
    EXPECT_EQ(string("\"a\\u0000b\""), QString::fromLatin1("a\0b", 3));
}

TEST(JsonDocumentTest, TakesOnlyTrueAndFalseForABoolean)
{
    const JsonDocument document = JsonDocument::parse(R"([true,false,1,0,"true",null])").value();
    const QList<JsonValue> values = *document.root().elements();

    EXPECT_EQ(values[0].boolean(), true);
    EXPECT_EQ(values[1].boolean(), false);
    for (const JsonValue &other : values.sliced(2))
        EXPECT_EQ(other.boolean(), std::nullopt);
}

TEST(JsonDocumentTest, TakesNothingButNumbersForIntegers)
{
    EXPECT_EQ(integer("\"1\""), std::nullopt);
    EXPECT_EQ(integer("true"), std::nullopt);
    EXPECT_EQ(integer("null"), std::nullopt);
    EXPECT_EQ(integer("[1]"), std::nullopt);
}

TEST(JsonDocumentTest, LetsTheFirstOfEqualKeysWin)
{
    const JsonDocument document = JsonDocument::parse(R"({"a":1,"b":[2,{"a":5}],"a":3})").value();

    EXPECT_EQ(document.root().member("a")->integer(), 1);
    EXPECT_EQ(document.root().member("b")->elements()->at(1).member("a")->integer(), 5);
    EXPECT_FALSE(document.root().member("c"));
}

TEST(JsonDocumentTest, HasNoMembersOrElementsWhereTheTypeIsAnother)
{
    const JsonDocument document = JsonDocument::parse(R"(["a",{"b":1}])").value();

    EXPECT_FALSE(document.root().member("b"));
    EXPECT_FALSE(document.root().elements()->at(1).elements());
    EXPECT_FALSE(document.root().elements()->at(0).elements());
    EXPECT_FALSE(document.root().string());
}

TEST(JsonDocumentTest, KeepsItsValuesWhenItIsCopiedAndTheOriginalGoes)
{
    std::optional<JsonDocument> original = JsonDocument::parse("[\"a\"]").value();
    const JsonDocument copy = *original;
    original.reset();

    EXPECT_EQ(copy.root().elements()->at(0).string(), u"a"_qs);
}

struct IntegerCase
{
    const char *name;
    const char *text;
    std::optional<qint64> expected;
};

class JsonIntegerTest : public testing::TestWithParam<IntegerCase>
{
};

TEST_P(JsonIntegerTest, IsExactOrNothing)
{
    EXPECT_EQ(integer(GetParam().text), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Numbers, JsonIntegerTest,
    testing::Values(IntegerCase{"Zero", "0", 0}, IntegerCase{"MinusZero", "-0", 0},
                    IntegerCase{"Most", "9223372036854775807", 9223372036854775807},
                    IntegerCase{"MoreThanMost", "9223372036854775808", std::nullopt},
                    IntegerCase{"Least", "-9223372036854775808", -9223372036854775807 - 1},
                    IntegerCase{"LessThanLeast", "-9223372036854775809", std::nullopt},
                    IntegerCase{"WholeWithPoint", "1.0", 1}, IntegerCase{"LargerWholeWithPoint", "34.0", 34},
                    IntegerCase{"WholeWithExponent", "1e3", 1000},
                    IntegerCase{"WholeWithUppercaseExponent", "1E+3", 1000},
                    IntegerCase{"PointMovedByExponent", "1.5e1", 15},
                    IntegerCase{"ZerosTakenBackByExponent", "1500e-2", 15}, IntegerCase{"ZeroWithFraction", "0.000", 0},
                    IntegerCase{"ZeroWithExponent", "0e5", 0},
                    IntegerCase{"BeyondDoublePrecision", "9007199254740993.0", 9007199254740993},
                    IntegerCase{"MostWithExponent", "9.223372036854775807e18", 9223372036854775807},
                    IntegerCase{"MoreThanMostWithExponent", "9.223372036854775808e18", std::nullopt},
                    IntegerCase{"NegativeWithPoint", "-12.0", -12}, IntegerCase{"Fraction", "1.5", std::nullopt},
                    IntegerCase{"FractionByExponent", "1e-1", std::nullopt},
                    IntegerCase{"TooLargeByExponent", "1e19", std::nullopt}),
    [](const auto &info) { return info.param.name; });

TEST(JsonDocumentTest, ReadsNumbersToTheNearestDouble)
{
    EXPECT_EQ(number("0.1"), 0.1);
    EXPECT_EQ(number("725846400"), 725846400.0);
    EXPECT_EQ(number("1e-07"), 1e-7);
    EXPECT_EQ(number("5e-324"), 5e-324);
    EXPECT_EQ(number("0.0"), 0.0);
    EXPECT_EQ(number("\"1\""), std::nullopt);
    EXPECT_EQ(number("true"), std::nullopt);
}

TEST(JsonDocumentTest, ReadsNoNumberThatVanishesOrOverflows)
{
    EXPECT_EQ(number("1e-400"), std::nullopt);
    EXPECT_FALSE(isAccepted("1e400"));
}
