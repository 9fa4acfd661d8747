#include "Platform/Linux/Filter/FilterPolicyRecord.h"

#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

FilterPolicyRecord sample()
{
    FilterPolicyRecord record;
    record.configuration.filterSockets = true;
    record.configuration.filterDataProviderBundleIdentifier = u"com.example.filter"_qs;
    record.configuration.vendorConfiguration = {
        {u"blockedBundleIdentifiers"_qs, QStringList{u"com.example.a"_qs, u"com.example.b"_qs}},
        {u"ecoTrafficEnabled"_qs, true},
        {u"ecoAllowedBundleIdentifiers"_qs, QStringList{u"com.example.c"_qs}},
    };
    record.localizedDescription = u"Sample filter"_qs;
    record.isEnabled = true;
    return record;
}

const QByteArray sampleText
    = R"({"blockedBundleIdentifiers":["com.example.a","com.example.b"],"description":"Sample filter",)"
      R"("ecoAllowedBundleIdentifiers":["com.example.c"],"ecoTrafficEnabled":true,"enabled":true,)"
      R"("filterSockets":true,"identifier":"com.example.filter"})"
      "\n";

} // namespace

TEST(FilterPolicyRecordTest, IsOneLineOfJson)
{
    EXPECT_EQ(written(sample()), sampleText);
}

TEST(FilterPolicyRecordTest, IsReadAsItWasWritten)
{
    FilterPolicyRecord empty;
    empty.configuration.vendorConfiguration = {
        {u"blockedBundleIdentifiers"_qs, QStringList()},
        {u"ecoTrafficEnabled"_qs, false},
        {u"ecoAllowedBundleIdentifiers"_qs, QStringList()},
    };

    EXPECT_EQ(readFilterPolicyRecord(sampleText), sample());
    EXPECT_EQ(readFilterPolicyRecord(written(empty)), empty);
    EXPECT_EQ(written(FilterPolicyRecord()), written(empty));
}

struct MalformedRecord
{
    const char *name;
    const char *before;
    const char *after;
};

class MalformedFilterPolicyRecordTest : public testing::TestWithParam<MalformedRecord>
{
};

TEST_P(MalformedFilterPolicyRecordTest, IsNone)
{
    QByteArray json = sampleText;
    json.replace(GetParam().before, GetParam().after);
    ASSERT_NE(json, sampleText);

    EXPECT_EQ(readFilterPolicyRecord(json), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(Changes, MalformedFilterPolicyRecordTest,
                         testing::Values(MalformedRecord{"AMemberIsMissing", "\"enabled\":true,", ""},
                                         MalformedRecord{"AMemberIsUnknown", "\"enabled\"", "\"more\":1,\"enabled\""},
                                         MalformedRecord{"ABooleanIsANumber", "\"enabled\":true", "\"enabled\":1"},
                                         MalformedRecord{"ATextIsABoolean", "\"Sample filter\"", "true"},
                                         MalformedRecord{"AnArrayIsAText", "[\"com.example.c\"]", "\"com.example.c\""},
                                         MalformedRecord{"AnElementIsANumber", "[\"com.example.c\"]", "[7]"},
                                         MalformedRecord{"TheObjectIsNotClosed", "}", ""}),
                         [](const auto &info) { return info.param.name; });
