#include "App/ScreensFixture.h"
#include "Fakes/Gate.h"
#include "Services/HistoryService.h"
#include "ViewModels/DashboardViewModel.h"
#include "ViewModels/ResourceMonitorViewModel.h"

#include <QTest>
#include <QTimer>

#include <atomic>

using namespace Quillmere;
using enum QAccessible::Role;

namespace {

/// The key that has a screen look at the machine anew.
class LookAnewTest : public ScreensFixture
{
protected:
    void add(const QByteArray &path, qint64 bytes = 1000) const { machine.files->addFile(FilePath(path), bytes); }
    void addRecord(const QStringList &errors = {}) const
    {
        OperationLog log;
        log.date = machine.clock->now();
        log.errors = errors;
        log.status = errors.isEmpty() ? OperationStatus::Completed : OperationStatus::Failed;
        HistoryService(machine.files).save(log);
    }
    /// Counts the walks from now on, each of which waits at @p gate.
    [[nodiscard]] std::shared_ptr<std::atomic<int>> countWalks(const Gate &gate) const
    {
        auto walks = std::make_shared<std::atomic<int>>(0);
        machine.files->onMeasure([walks, gate](const FilePath &) {
            ++*walks;
            gate.wait();
        });
        return walks;
    }
};

struct ScanCase
{
    const char *name;
    SidebarTab tab;
};

class KeysDuringAScanTest : public LookAnewTest, public testing::WithParamInterface<ScanCase>
{
};

} // namespace

TEST_F(LookAnewTest, MeasuresTheMachineAndItsApplicationsOnTheDashboard)
{
    const Person person = open();
    auto *figures = app->mainWindow()->findChild<DashboardViewModel *>();
    auto *processes = app->mainWindow()->findChild<ResourceMonitorViewModel *>();
    ASSERT_TRUE(QTest::qWaitFor([&] { return machine.workspace->listings() == 1; }));
    figures->stopAutoRefresh();
    processes->stopMonitoring();
    const qsizetype requests = machine.files->capacityRequests().size();

    person.press(Qt::Key_F5);

    EXPECT_TRUE(QTest::qWaitFor([&] { return machine.workspace->listings() == 2; }));
    EXPECT_TRUE(QTest::qWaitFor([&] { return machine.files->capacityRequests().size() > requests; }));
}

TEST_F(LookAnewTest, ScansForRiskierGround)
{
    const Person person = open(SidebarTab::ProfessionalCleanup);
    add("/home/ada/.npm/_cacache/data");

    person.press(Qt::Key_F5);

    EXPECT_TRUE(person.sees(Button, u"Clean"_qs));
}

TEST_F(LookAnewTest, ScansForLargeFilesFromTheStartAndFromTheList)
{
    const Person person = open(SidebarTab::LargeFiles);
    add("/home/ada/Movies/film.mp4", 300'000'000);
    person.press(Qt::Key_F5);
    EXPECT_TRUE(person.reads(u"1 files (300 MB)"_qs));

    add("/home/ada/Movies/other.mp4", 200'000'000);
    person.press(Qt::Key_F5);

    EXPECT_TRUE(person.reads(u"2 files (500 MB)"_qs));
}

TEST_F(LookAnewTest, DetectsTheBrowsers)
{
    const Person person = open(SidebarTab::Browsers);
    ASSERT_TRUE(person.reads(u"No browsers detected"_qs));
    machine.workspace->install(u"com.google.Chrome"_qs);

    person.press(Qt::Key_F5);

    EXPECT_TRUE(person.reads(u"Google Chrome, "_qs));
}

TEST_F(LookAnewTest, MeasuresTheDisk)
{
    machine.files->setCapacity(VolumeCapacity{100'000'000'000, 40'000'000'000, 40'000'000'000});
    add("/Applications/data", 10'000'000'000);
    const Person person = open(SidebarTab::SystemData);
    ASSERT_TRUE(person.sees(ListItem, u"Applications, 10 GB, 10.0%"_qs));
    add("/Applications/more", 10'000'000'000);

    person.press(Qt::Key_F5);

    EXPECT_TRUE(person.sees(ListItem, u"Applications, 20 GB, 20.0%"_qs));
}

TEST_F(LookAnewTest, ReadsTheStartupItems)
{
    const Person person = open(SidebarTab::Startup);
    ASSERT_TRUE(person.reads(u"No startup items found"_qs));
    machine.files->addFile(FilePath("/home/ada/Library/LaunchAgents/a.plist"), 100,
                           "<plist version=\"1.0\"><dict></dict></plist>");

    person.press(Qt::Key_F5);

    EXPECT_TRUE(person.reads(u"a, Launch Agent"_qs));
}

TEST_F(LookAnewTest, ScansForApplications)
{
    const Person person = open(SidebarTab::Applications);
    ASSERT_TRUE(person.reads(u"No applications scanned"_qs));
    machine.addBundle(FilePath("/Applications/Painter.app"), 5'000'000, u"com.example.painter"_qs, u"4.2"_qs);

    person.press(Qt::Key_F5);

    EXPECT_TRUE(person.sees(ListItem, u"Painter, 5 MB"_qs));
}

TEST_F(LookAnewTest, ReadsTheHistory)
{
    const Person person = open(SidebarTab::History);
    ASSERT_TRUE(person.reads(u"No history available"_qs));
    addRecord();

    person.press(Qt::Key_F5);

    EXPECT_TRUE(person.reads(u"Completed"_qs));
}

TEST_F(LookAnewTest, ReadsNoHistoryUnderAQuestion)
{
    addRecord();
    const Person person = open(SidebarTab::History);
    ASSERT_TRUE(person.click(Button, u"Delete"_qs));
    ASSERT_TRUE(person.sees(Dialog, u"Clear History?"_qs));
    addRecord({u"failure"_qs});

    person.press(Qt::Key_F5);
    ASSERT_TRUE(person.click(Button, u"Cancel"_qs));
    EXPECT_TRUE(person.seesNo(Dialog, u"Clear History?"_qs));
    EXPECT_TRUE(person.readsNo(u"Failed"_qs));

    person.press(Qt::Key_F5);
    EXPECT_TRUE(person.reads(u"Failed"_qs));
}

TEST_F(LookAnewTest, LooksForThePermissionOnTheSettingsAndInTheirOwnWindow)
{
    const Person person = open(SidebarTab::Settings);
    app->showSettings();
    ASSERT_TRUE(QTest::qWaitForWindowActive(app->settingsWindow()));
    const Person other(*app->settingsWindow());
    ASSERT_TRUE(other.readsNo(u"Granted"_qs));
    add("/home/ada/Library/Safari/Bookmarks.plist");

    other.press(Qt::Key_F5);
    EXPECT_TRUE(other.reads(u"Granted"_qs));
    EXPECT_TRUE(person.readsNo(u"Granted"_qs));

    app->mainWindow()->requestActivate();
    ASSERT_TRUE(QTest::qWaitForWindowActive(app->mainWindow()));
    person.press(Qt::Key_F5);
    EXPECT_TRUE(person.reads(u"Granted"_qs));
}

TEST_P(KeysDuringAScanTest, DoNotScanTwiceAndLeadToAnotherScreen)
{
    add("/home/ada/Library/Caches/browser/data");
    add("/home/ada/.npm/_cacache/data");
    add("/home/ada/Movies/film.mp4", 300'000'000);
    const Gate gate;
    const auto walks = countWalks(gate);
    const Person person = open(GetParam().tab);
    ASSERT_TRUE(person.click(Button, u"Start Scan"_qs));
    ASSERT_TRUE(person.sees(Dialog, u"Scanning..."_qs));
    ASSERT_TRUE(QTest::qWaitFor([walks] { return walks->load() == 1; }));

    person.press(Qt::Key_F5);
    EXPECT_FALSE(QTest::qWaitFor([walks] { return walks->load() > 1; }, 100));
    person.press(Qt::Key_5, Qt::ControlModifier);

    EXPECT_EQ(app->appState().selectedTab(), SidebarTab::Browsers);
    gate.open();
    EXPECT_TRUE(person.seesNo(Dialog, u"Scanning..."_qs));
}

INSTANTIATE_TEST_SUITE_P(Screens, KeysDuringAScanTest,
                         testing::Values(ScanCase{"SafeCleanup", SidebarTab::SafeCleanup},
                                         ScanCase{"ProfessionalCleanup", SidebarTab::ProfessionalCleanup},
                                         ScanCase{"LargeFiles", SidebarTab::LargeFiles}),
                         [](const auto &info) { return info.param.name; });

TEST_F(LookAnewTest, LeavesNoScreenByKeyWhileSomethingIsRemoved)
{
    add("/home/ada/Library/Caches/browser/data");
    const Gate gate;
    machine.files->onRemoval([gate](const FilePath &) { gate.wait(); });
    const Person person = open(SidebarTab::SafeCleanup);
    ASSERT_TRUE(person.click(Button, u"Start Scan"_qs));
    ASSERT_TRUE(person.click(Button, u"Clean"_qs));
    ASSERT_TRUE(person.sees(Dialog, u"Cleaning..."_qs));

    person.press(Qt::Key_5, Qt::ControlModifier);

    EXPECT_EQ(app->appState().selectedTab(), SidebarTab::SafeCleanup);
    gate.open();
    EXPECT_TRUE(person.reads(u"Cleanup Report"_qs));
}
