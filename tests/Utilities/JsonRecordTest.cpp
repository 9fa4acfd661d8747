#include "Models/RiskLevel.h"
#include "Utilities/JsonDocument.h"
#include "Utilities/JsonObjectDecoder.h"
#include "Utilities/JsonWriter.h"

#include <gtest/gtest.h>

#include <limits>

using namespace Quillmere;

namespace {

template<typename Type>
std::optional<Type> decoded(const QByteArray &text)
{
    const JsonDocument document = JsonDocument::parse(text).value();
    Type target{};
    return decodeJson(document.root(), target) ? std::optional(target) : std::nullopt;
}

template<typename Type>
QByteArray written(const Type &value)
{
    JsonWriter writer;
    writer.value(value);
    return writer.result().value();
}

struct Record
{
    qint64 count = 7;
    QString name = u"before"_qs;
};

} // namespace

TEST(JsonWriterTest, WritesTheShortestTextOfANumber)
{
    EXPECT_EQ(written(0.0), "0");
    EXPECT_EQ(written(-0.0), "-0");
    EXPECT_EQ(written(725846400.0), "725846400");
    EXPECT_EQ(written(0.5), "0.5");
    EXPECT_EQ(written(0.1), "0.1");
    EXPECT_EQ(written(100000.0), "100000");
    EXPECT_EQ(written(0.0001), "0.0001");
    EXPECT_EQ(written(1e-5), "1e-05");
    EXPECT_EQ(written(1e-7), "1e-07");
    EXPECT_EQ(written(1e16), "1e+16");
    EXPECT_EQ(written(std::numeric_limits<double>::max()), "1.7976931348623157e+308");
}

TEST(JsonWriterTest, WritesIntegersInFull)
{
    EXPECT_EQ(written(std::numeric_limits<qint64>::max()), "9223372036854775807");
    EXPECT_EQ(written(std::numeric_limits<qint64>::min()), "-9223372036854775808");
}

TEST(JsonWriterTest, EscapesWhatMustBeAndTheSlash)
{
    EXPECT_EQ(written(u"\"\\/\b\f\n\r\t"_qs), R"("\"\\\/\b\f\n\r\t")");
    EXPECT_EQ(written(u"\u0001\u001F\u007F"_qs), QByteArray("\"\\u0001\\u001f\x7F\""));
    EXPECT_EQ(written(QString(QChar(u'\0'))), R"("\u0000")");
    EXPECT_EQ(written(u"жé😀"_qs), "\"жé😀\"");
}

TEST(JsonWriterTest, WritesIdentitiesInUpperCase)
{
    EXPECT_EQ(written(QUuid(u"{6ba7b810-9dad-11d1-80b4-00c04fd430c8}"_qs)), "\"6BA7B810-9DAD-11D1-80B4-00C04FD430C8\"");
}

TEST(JsonWriterTest, WritesEnumerationsBooleansAndListsOfTexts)
{
    EXPECT_EQ(written(RiskLevel::Dangerous), "\"dangerous\"");
    EXPECT_EQ(written(true), "true");
    EXPECT_EQ(written(QStringList{}), "[]");
    EXPECT_EQ(written(QStringList{u"a"_qs, u"b/c"_qs}), R"(["a","b\/c"])");
}

TEST(JsonWriterTest, SeparatesMembersAndElementsByCommasAlone)
{
    JsonWriter writer;
    writer.beginArray();
    for (int count = 0; count < 2; ++count) {
        writer.beginObject();
        writer.member("a", qint64{1});
        writer.member("b", QStringList{u"x"_qs});
        writer.endObject();
    }
    writer.endArray();

    EXPECT_EQ(writer.result().value(), R"([{"a":1,"b":["x"]},{"a":1,"b":["x"]}])");
}

TEST(JsonWriterTest, FailsTheWholeTextForWhatIsNoNumberAndNoDate)
{
    for (const double value : {std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()}) {
        JsonWriter writer;
        writer.value(value);
        EXPECT_FALSE(writer.result());
    }
    JsonWriter writer;
    writer.value(QDateTime());
    EXPECT_FALSE(writer.result());
}

TEST(JsonDateTest, CountsSecondsFromTheYear2001)
{
    EXPECT_EQ(written(QDateTime({2001, 1, 1}, {0, 0}, Qt::UTC)), "0");
    EXPECT_EQ(written(QDateTime({2024, 1, 2}, {0, 0}, Qt::UTC)), "725846400");
    EXPECT_EQ(written(QDateTime({2000, 12, 31}, {23, 59, 59, 500}, Qt::UTC)), "-0.5");
    EXPECT_EQ(decoded<QDateTime>("725846400"), QDateTime({2024, 1, 2}, {0, 0}, Qt::UTC));
    EXPECT_EQ(decoded<QDateTime>("7.258464e8"), QDateTime({2024, 1, 2}, {0, 0}, Qt::UTC));
    EXPECT_EQ(decoded<QDateTime>("\"2024-01-02T00:00:00Z\""), std::nullopt);
}

TEST(JsonDateTest, BringsEveryMillisecondBack)
{
    const QDateTime start({2026, 11, 21}, {9, 12}, Qt::UTC);
    for (int milliseconds = 0; milliseconds < 1000; ++milliseconds) {
        const QDateTime date = start.addMSecs(milliseconds);
        EXPECT_EQ(decoded<QDateTime>(written(date)), date);
    }
    const QDateTime early({1815, 12, 10}, {1, 2, 3, 7}, Qt::UTC);
    EXPECT_EQ(decoded<QDateTime>(written(early)), early);
}

TEST(JsonDateTest, StaysWithinTheCalendarForAnyNumber)
{
    EXPECT_TRUE(decoded<QDateTime>("1e300")->isValid());
    EXPECT_TRUE(decoded<QDateTime>("-1e300")->isValid());
    EXPECT_LT(*decoded<QDateTime>("-1e300"), *decoded<QDateTime>("1e300"));
}

TEST(JsonDecodingTest, TakesIdentitiesInEitherCaseAndInTheCanonicalFormAlone)
{
    const QUuid expected(u"{6ba7b810-9dad-11d1-80b4-00c04fd430c8}"_qs);
    EXPECT_EQ(decoded<QUuid>("\"6BA7B810-9DAD-11D1-80B4-00C04FD430C8\""), expected);
    EXPECT_EQ(decoded<QUuid>("\"6ba7b810-9dad-11d1-80b4-00c04fd430c8\""), expected);
    for (const QByteArray text : {"", "{6ba7b810-9dad-11d1-80b4-00c04fd430c8}", "6ba7b8109dad11d180b400c04fd430c8",
                                  "6ba7b810-9dad-11d1-80b4-00c04fd430cg", "6ba7b810-9dad-11d1-80b4_00c04fd430c8"})
        EXPECT_EQ(decoded<QUuid>('"' + text + '"'), std::nullopt) << text.constData();
}

TEST(JsonDecodingTest, RefusesACaseThatDoesNotExist)
{
    EXPECT_EQ(decoded<RiskLevel>("\"medium\""), RiskLevel::Medium);
    EXPECT_EQ(decoded<RiskLevel>("\"Medium\""), std::nullopt);
    EXPECT_EQ(decoded<RiskLevel>("\"\""), std::nullopt);
    EXPECT_EQ(decoded<RiskLevel>("1"), std::nullopt);
}

TEST(JsonDecodingTest, RefusesAListWithOneElementThatIsNoText)
{
    EXPECT_EQ(decoded<QStringList>(R"(["a","b"])"), (QStringList{u"a"_qs, u"b"_qs}));
    EXPECT_EQ(decoded<QStringList>(R"(["a",1])"), std::nullopt);
    EXPECT_EQ(decoded<QStringList>(R"(["a",null])"), std::nullopt);
    EXPECT_EQ(decoded<QStringList>(R"("a")"), std::nullopt);
}

TEST(JsonObjectDecoderTest, NamesTheFirstFieldThatFails)
{
    const JsonDocument document = JsonDocument::parse(R"({"count":"1","name":2})").value();
    Record record;
    JsonObjectDecoder object(document.root());
    object.required("count", record.count);
    object.required("name", record.name);

    ASSERT_TRUE(object.failure());
    EXPECT_EQ(object.failure()->kind, Failure::Kind::Malformed);
    EXPECT_TRUE(object.failure()->detail.contains(u"count"));
    EXPECT_EQ(record.count, 7);
}

TEST(JsonObjectDecoderTest, RequiresThatTheFieldIsThereAndNotNull)
{
    for (const char *text : {"{}", R"({"count":null})", R"({"Count":1})"}) {
        const JsonDocument document = JsonDocument::parse(text).value();
        Record record;
        JsonObjectDecoder object(document.root());
        object.required("count", record.count);
        EXPECT_TRUE(object.failure()) << text;
    }
}

TEST(JsonObjectDecoderTest, LeavesAnOptionalFieldThatIsMissingOrNull)
{
    const JsonDocument document = JsonDocument::parse(R"({"count":null,"other":[]})").value();
    Record record;
    JsonObjectDecoder object(document.root());
    object.optional("count", record.count);
    object.optional("name", record.name);

    EXPECT_FALSE(object.failure());
    EXPECT_EQ(record.count, 7);
    EXPECT_EQ(record.name, u"before"_qs);
}

TEST(JsonObjectDecoderTest, FailsAnOptionalFieldOfAnotherKind)
{
    const JsonDocument document = JsonDocument::parse(R"({"count":true})").value();
    Record record;
    JsonObjectDecoder object(document.root());
    object.optional("count", record.count);

    EXPECT_TRUE(object.failure());
}

TEST(JsonObjectDecoderTest, FailsWhatIsNoObject)
{
    const JsonDocument document = JsonDocument::parse("[]").value();

    EXPECT_TRUE(JsonObjectDecoder(document.root()).failure());
}
