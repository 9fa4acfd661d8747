#include "App/AppState.h"
#include "Fakes/PretendUserDefaults.h"
#include "Utilities/AppSettingsStore.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

class AppStateTest : public testing::Test
{
protected:
    std::shared_ptr<PretendUserDefaults> defaults = std::make_shared<PretendUserDefaults>();
    AppState state{defaults};
};

} // namespace

TEST_F(AppStateTest, StartsOnTheDashboardWithNothingScannedOrCleaned)
{
    EXPECT_EQ(state.selectedTab(), SidebarTab::Dashboard);
    EXPECT_FALSE(state.isScanning());
    EXPECT_EQ(state.scanProgress(), 0.0);
    EXPECT_FALSE(state.lastScanDate().isValid());
    EXPECT_FALSE(state.lastCleanupDate().isValid());
    EXPECT_EQ(state.settings(), AppSettings());
}

TEST_F(AppStateTest, IsSharedOnlyOnceTheWindowHasAppeared)
{
    EXPECT_EQ(AppState::shared(), nullptr);
}

TEST_F(AppStateTest, LoadsTheStoredSettingsWithoutWritingThem)
{
    AppSettings stored;
    stored.theme = AppTheme::Dark;
    AppSettingsStore::save(stored, *defaults);
    const int writes = defaults->writes();

    const AppState next(defaults);

    EXPECT_EQ(next.settings(), stored);
    EXPECT_EQ(defaults->writes(), writes);
}

TEST_F(AppStateTest, SavesEachEditAtOnceAfterPublishingIt)
{
    bool wasSavedWhenPublished = true;
    QObject::connect(&state, &AppState::settingsChanged, &state,
                     [&] { wasSavedWhenPublished = defaults->writes() > 0; });
    AppSettings edited = state.settings();
    edited.theme = AppTheme::Light;

    state.setSettings(edited);

    EXPECT_FALSE(wasSavedWhenPublished);
    EXPECT_EQ(AppSettingsStore::load(*defaults), edited);
}

TEST_F(AppStateTest, SavesAnAssignmentOfAnEqualRecordToo)
{
    state.setSettings(state.settings());

    EXPECT_EQ(defaults->writes(), 1);
}

TEST_F(AppStateTest, SavesWhatAnObserverMadeOfTheRecordMeanwhile)
{
    AppSettings first;
    first.theme = AppTheme::Light;
    AppSettings second;
    second.theme = AppTheme::Dark;
    QObject::connect(&state, &AppState::settingsChanged, &state, [&] {
        if (state.settings() == first)
            state.setSettings(second);
    });

    state.setSettings(first);

    EXPECT_EQ(AppSettingsStore::load(*defaults), second);
}

TEST_F(AppStateTest, PublishesEachProperty)
{
    const QSignalSpy tab(&state, &AppState::selectedTabChanged);
    const QSignalSpy scanning(&state, &AppState::isScanningChanged);
    const QSignalSpy progress(&state, &AppState::scanProgressChanged);
    const QSignalSpy scanDate(&state, &AppState::lastScanDateChanged);
    const QSignalSpy cleanupDate(&state, &AppState::lastCleanupDateChanged);

    state.setSelectedTab(SidebarTab::History);
    state.setIsScanning(true);
    state.setScanProgress(0.5);
    state.setLastScanDate(QDateTime::currentDateTimeUtc());
    state.setLastCleanupDate(QDateTime::currentDateTimeUtc());

    EXPECT_EQ(tab.count() + scanning.count() + progress.count() + scanDate.count() + cleanupDate.count(), 5);
    EXPECT_EQ(state.selectedTab(), SidebarTab::History);
    EXPECT_TRUE(state.isScanning());
    EXPECT_EQ(state.scanProgress(), 0.5);
}

TEST(SidebarTabTest, ListsTheElevenDestinationsInOrderWithSymbolAndTitle)
{
    const struct
    {
        QStringView rawValue, icon;
    } expected[] = {
        {u"dashboard", u"gauge.medium"},
        {u"safeCleanup", u"checkmark.shield"},
        {u"professionalCleanup", u"wrench.and.screwdriver"},
        {u"largeFiles", u"doc.text.magnifyingglass"},
        {u"browsers", u"globe"},
        {u"systemData", u"internaldrive"},
        {u"startup", u"power"},
        {u"applications", u"square.grid.2x2"},
        {u"tools", u"hammer"},
        {u"history", u"clock.arrow.circlepath"},
        {u"settings", u"gear"},
    };
    const QList<SidebarTab> tabs = allCases<SidebarTab>();
    ASSERT_EQ(tabs.size(), std::ssize(expected));
    for (int i = 0; i < tabs.size(); ++i) {
        EXPECT_EQ(rawValue(tabs.at(i)), expected[i].rawValue);
        EXPECT_EQ(icon(tabs.at(i)), expected[i].icon);
        EXPECT_EQ(titleKey(tabs.at(i)), u"nav."_qs + expected[i].rawValue.toString());
    }
}
