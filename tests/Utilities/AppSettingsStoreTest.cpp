#include "Utilities/AppSettingsStore.h"

#include "Fakes/PretendUserDefaults.h"

#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

AppSettings loaded(const QByteArray &stored)
{
    PretendUserDefaults defaults;
    defaults.setData(u"appSettings"_qs, stored);
    return AppSettingsStore::load(defaults);
}

/// Every field unlike its default.
AppSettings unusualSettings()
{
    return {
        .language = Language::Russian,
        .theme = AppTheme::Dark,
        .menuBarDisplayMode = MenuBarDisplayMode::Ram,
        .safeMode = false,
        .advancedMode = true,
        .alwaysConfirmDangerous = false,
        .excludedPaths = {u"/home/ada/a \"b\""_qs},
        .excludedApps = {u"org.example.a"_qs, u"org.example.b"_qs},
        .scanExternalDrives = true,
        .scanICloudDrive = true,
        .showHiddenFiles = true,
        .anonymousDiagnostics = true,
        .keepAwakeEnabled = true,
    };
}

} // namespace

TEST(AppSettingsStoreTest, LoadsTheDefaultsWhenNothingIsStored)
{
    const AppSettings settings = AppSettingsStore::load(PretendUserDefaults());

    EXPECT_EQ(settings, AppSettings());
    EXPECT_TRUE(settings.safeMode);
    EXPECT_TRUE(settings.alwaysConfirmDangerous);
    EXPECT_FALSE(settings.advancedMode);
    EXPECT_FALSE(settings.keepAwakeEnabled);
}

TEST(AppSettingsStoreTest, BringsEveryFieldBack)
{
    PretendUserDefaults defaults;
    AppSettingsStore::save(unusualSettings(), defaults);

    EXPECT_EQ(AppSettingsStore::load(defaults), unusualSettings());
}

TEST(AppSettingsStoreTest, StoresTheRecordAsJsonInTheOrderOfItsFields)
{
    PretendUserDefaults defaults;
    AppSettingsStore::save(unusualSettings(), defaults);

    EXPECT_EQ(defaults.data(u"appSettings"_qs),
              R"({"language":"ru","theme":"dark","menuBarDisplayMode":"ram","safeMode":false,"advancedMode":true,)"
              R"("alwaysConfirmDangerous":false,"excludedPaths":["\/home\/ada\/a \"b\""],)"
              R"("excludedApps":["org.example.a","org.example.b"],"scanExternalDrives":true,"scanICloudDrive":true,)"
              R"("showHiddenFiles":true,"anonymousDiagnostics":true,"keepAwakeEnabled":true})");
    EXPECT_EQ(defaults.writes(), 1);
}

TEST(AppSettingsStoreTest, TakesMissingSafeModeAndConfirmationForTrueAndKeepsAllOtherValues)
{
    const AppSettings settings = loaded(R"({"theme":"light","advancedMode":true,"excludedPaths":["\/a"]})");

    AppSettings expected;
    expected.theme = AppTheme::Light;
    expected.advancedMode = true;
    expected.excludedPaths = {u"/a"_qs};
    EXPECT_EQ(settings, expected);
    EXPECT_TRUE(settings.safeMode);
    EXPECT_TRUE(settings.alwaysConfirmDangerous);
}

TEST(AppSettingsStoreTest, LoadsTheWholeDefaultRecordWhenTheThemeIsNoCase)
{
    EXPECT_EQ(loaded(R"({"excludedPaths":["\/a"],"safeMode":false,"theme":"pink"})"), AppSettings());
}

TEST(AppSettingsStoreTest, TakesNullForMissing)
{
    AppSettings expected;
    expected.theme = AppTheme::Dark;
    EXPECT_EQ(loaded(R"({"safeMode":null,"excludedApps":null,"language":null,"theme":"dark"})"), expected);
}

TEST(AppSettingsStoreTest, IgnoresKeysThatItDoesNotKnow)
{
    AppSettings expected;
    expected.theme = AppTheme::Dark;
    EXPECT_EQ(loaded(R"({"future":{"a":[1]},"theme":"dark"})"), expected);
}

class DamagedSettingsTest : public testing::TestWithParam<const char *>
{
};

TEST_P(DamagedSettingsTest, LoadAsTheDefaults)
{
    EXPECT_EQ(loaded(GetParam()), AppSettings());
}

INSTANTIATE_TEST_SUITE_P(Records, DamagedSettingsTest,
                         testing::Values("", "rubbish", "null", "[]", "7", R"("dark")", R"({"theme":"dark")",
                                         R"({"theme":"dark","safeMode":1})", R"({"theme":"dark","safeMode":"false"})",
                                         R"({"theme":"dark","excludedPaths":"\/a"})",
                                         R"({"theme":"dark","excludedPaths":["\/a",1]})",
                                         R"({"theme":"dark","language":"de"})",
                                         R"({"theme":"dark","language":"english"})",
                                         R"({"theme":"dark","menuBarDisplayMode":"Cpu"})", R"({"theme":1})"));

TEST(AppSettingsStoreTest, LoadsTheDefaultsWhenTheKeyHoldsAText)
{
    PretendUserDefaults defaults;
    defaults.setString(u"appSettings"_qs, u"{\"theme\":\"dark\"}"_qs);

    EXPECT_EQ(AppSettingsStore::load(defaults), AppSettings());
}

TEST(AppSettingsStoreTest, WritesNothingWhenItLoadsADamagedRecord)
{
    PretendUserDefaults defaults;
    defaults.setData(u"appSettings"_qs, "rubbish");

    [[maybe_unused]] const AppSettings settings = AppSettingsStore::load(defaults);

    EXPECT_EQ(defaults.data(u"appSettings"_qs), "rubbish");
    EXPECT_EQ(defaults.writes(), 1);
}
