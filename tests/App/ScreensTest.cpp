#include "App/ScreensFixture.h"
#include "Fakes/Gate.h"
#include "Utilities/BackgroundWork.h"

#include <QTest>
#include <QThread>
#include <QTimer>

using namespace Quillmere;
using enum QAccessible::Role;

namespace {

class ScreensTest : public ScreensFixture
{
protected:
    void addTree(const QByteArray &path, qint64 bytes)
    {
        machine.files->addFile(FilePath("/home/ada/Library").appending(path).appending("data"), bytes);
    }

    /// Opens Safe Cleanup and scans.
    Person openScanned()
    {
        Person person = open(SidebarTab::SafeCleanup);
        EXPECT_TRUE(person.click(Button, u"Start Scan"_qs));
        EXPECT_TRUE(person.sees(Button, u"Clean"_qs));
        return person;
    }
};

} // namespace

TEST_F(ScreensTest, ReachesEveryDestinationFromTheSidebar)
{
    const Person person = open();
    const QStringList names
        = {u"Dashboard"_qs,   u"Safe Cleanup"_qs,  u"Professional Cleanup"_qs, u"Large Files"_qs, u"Browsers"_qs,
           u"System Data"_qs, u"Startup Items"_qs, u"Applications"_qs,         u"Tools"_qs,       u"History"_qs,
           u"Settings"_qs};

    for (int i = 0; i < names.size(); ++i) {
        EXPECT_TRUE(person.click(ListItem, names.at(i))) << names.at(i).toStdString();
        EXPECT_EQ(int(app->appState().selectedTab()), i);
    }
}

TEST_F(ScreensTest, TurnsTheSidebarAndTheScreenAtOnceWhenTheLanguageChanges)
{
    const Person person = open(SidebarTab::SafeCleanup);

    app->localizer().setLanguage(Language::Russian);

    EXPECT_TRUE(person.sees(ListItem, Localizer::shared().localized(u"nav.history"_qs)));
    EXPECT_TRUE(person.sees(Button, Localizer::shared().localized(u"cleanup.startScan"_qs)));
    EXPECT_TRUE(person.readsNo(u"Start Scan"_qs));
    EXPECT_TRUE(person.readsNo(u"History"_qs));
}

TEST_F(ScreensTest, InvitesToScanAndShowsWhatWasFound)
{
    addTree("Caches/browser", 1'500'000);
    addTree("Logs/app", 500'000);
    const Person person = open(SidebarTab::SafeCleanup);
    EXPECT_TRUE(person.reads(u"Find and safely remove cache files and logs."_qs));
    EXPECT_TRUE(person.readsNo(u"selected"_qs));

    ASSERT_TRUE(person.click(Button, u"Start Scan"_qs));

    EXPECT_TRUE(person.reads(u"User Cache"_qs));
    EXPECT_TRUE(person.reads(u"User Logs"_qs));
    EXPECT_TRUE(person.readsNo(u"Container Cache"_qs));
    EXPECT_TRUE(person.reads(u"2 MB selected"_qs));
    EXPECT_TRUE(person.seesNo(Button, u"Start Scan"_qs));
}

TEST_F(ScreensTest, SaysSoWhenThereIsNothingToClean)
{
    const Person person = openScanned();

    EXPECT_TRUE(person.reads(u"No items found to clean"_qs));
    EXPECT_FALSE(person.canUse(Button, u"Clean"_qs));
    EXPECT_TRUE(person.seesNo(Button, u"Start Scan"_qs));
}

TEST_F(ScreensTest, SwitchesCategoriesOffAndOn)
{
    addTree("Caches/browser", 1'500'000);
    addTree("Logs/app", 500'000);
    const Person person = openScanned();

    ASSERT_TRUE(person.click(CheckBox, u"User Logs"_qs));
    EXPECT_TRUE(person.reads(u"1.5 MB"_qs));
    EXPECT_FALSE(person.find(CheckBox, u"User Logs"_qs)->state().checked);

    ASSERT_TRUE(person.click(Button, u"Deselect All"_qs));
    EXPECT_TRUE(person.reads(u"Zero KB"_qs));
    EXPECT_FALSE(person.canUse(Button, u"Clean"_qs));

    ASSERT_TRUE(person.click(Button, u"Select All"_qs));
    EXPECT_TRUE(person.reads(u"2 MB"_qs));
    EXPECT_TRUE(person.canUse(Button, u"Clean"_qs));
}

TEST_F(ScreensTest, NamesItsListsToAssistiveTools)
{
    addTree("Caches/browser", 1000);
    machine.files->addFile(FilePath("/home/ada/.npm/_cacache/data"), 1000);
    const Person person = openScanned();

    EXPECT_TRUE(person.sees(List, u"Sidebar"_qs));
    EXPECT_TRUE(person.sees(List, u"Safe Cleanup"_qs));

    ASSERT_TRUE(person.click(ListItem, u"Professional Cleanup"_qs));
    ASSERT_TRUE(person.click(Button, u"Start Scan"_qs));
    EXPECT_TRUE(person.sees(List, u"Professional Cleanup"_qs));
}

TEST_F(ScreensTest, OpensACategoryAndListsItsFirstItems)
{
    for (int i = 0; i < 7; ++i)
        addTree("Caches/cache-" + QByteArray::number(i), 1000);
    const Person person = openScanned();
    EXPECT_TRUE(person.readsNo(u"cache-0"_qs));

    ASSERT_TRUE(person.click(ListItem, u"User Cache, Application caches in your user folder, 7 items, 7 KB, Safe"_qs));

    EXPECT_TRUE(person.reads(u"cache-4"_qs));
    EXPECT_TRUE(person.readsNo(u"cache-5"_qs));
    EXPECT_TRUE(person.reads(u"2 more..."_qs));
    EXPECT_TRUE(person.reads(u"1KB"_qs));
}

TEST_F(ScreensTest, CleansReportsAndScansAnew)
{
    addTree("Caches/browser", 1'500'000);
    addTree("Logs/app", 500'000);
    addTree("Logs/locked", 100'000);
    machine.files->refuse(FilePath("/home/ada/Library/Logs/locked"), Failure::Kind::NoPermission);
    const Person person = openScanned();

    ASSERT_TRUE(person.click(Button, u"Clean"_qs));

    EXPECT_TRUE(person.reads(u"Cleanup Report"_qs));
    EXPECT_TRUE(QTest::qWaitFor([&] { return showsSymbolOnScreen(u"checkmark.circle.fill"_qs); }));
    EXPECT_TRUE(person.reads(u"Space Freed: 2 MB"_qs));
    EXPECT_TRUE(person.reads(u"Files Removed: 2"_qs));
    EXPECT_TRUE(person.reads(u"Files Skipped: 1"_qs));
    EXPECT_TRUE(person.reads(u"Failed to clean locked: Permission denied"_qs));

    ASSERT_TRUE(person.click(Button, u"Done"_qs));
    EXPECT_TRUE(person.readsNo(u"Cleanup Report"_qs));
    EXPECT_TRUE(person.reads(u"User Logs"_qs));
    EXPECT_TRUE(person.readsNo(u"User Cache"_qs));
}

TEST_F(ScreensTest, ShowsNoSkippedLineAndNoErrorsWhenAllWentWell)
{
    addTree("Caches/browser", 1'500'000);
    const Person person = openScanned();

    ASSERT_TRUE(person.click(Button, u"Clean"_qs));

    EXPECT_TRUE(person.reads(u"Files Removed: 1"_qs));
    EXPECT_TRUE(person.readsNo(u"Files Skipped"_qs));
    EXPECT_TRUE(person.readsNo(u"Errors"_qs));
}

TEST_F(ScreensTest, ShowsTheScanOverTheScreenUntilItIsCancelled)
{
    addTree("Caches/browser", 1000);
    const Gate gate;
    machine.files->onMeasure([gate](const FilePath &) { gate.wait(); });
    const Person person = open(SidebarTab::SafeCleanup);
    ASSERT_TRUE(person.click(Button, u"Start Scan"_qs));
    EXPECT_TRUE(person.sees(Dialog, u"Scanning..."_qs));
    EXPECT_TRUE(person.reads(u"browser"_qs));

    ASSERT_TRUE(person.click(Button, u"Cancel"_qs));
    gate.open();

    EXPECT_TRUE(person.seesNo(Dialog, u"Scanning..."_qs));
    EXPECT_TRUE(person.sees(Button, u"Start Scan"_qs));
    EXPECT_TRUE(person.readsNo(u"selected"_qs));
}

TEST_F(ScreensTest, TakesEscapeForCancelDuringAScan)
{
    addTree("Caches/browser", 1000);
    const Gate gate;
    machine.files->onMeasure([gate](const FilePath &) { gate.wait(); });
    const Person person = open(SidebarTab::SafeCleanup);
    ASSERT_TRUE(person.click(Button, u"Start Scan"_qs));
    ASSERT_TRUE(person.sees(Dialog, u"Scanning..."_qs));

    person.press(Qt::Key_Escape);
    gate.open();

    EXPECT_TRUE(person.sees(Button, u"Start Scan"_qs));
}

TEST_F(ScreensTest, LetsAScanEndBeforeWhatItAsksForGoes)
{
    addTree("Caches/browser", 1000);
    const Gate gate;
    const Gate reached;
    machine.files->onMeasure([gate, reached](const FilePath &) {
        reached.open();
        gate.wait();
        QThread::msleep(50);
    });
    const Person person = open(SidebarTab::SafeCleanup);
    ASSERT_TRUE(person.click(Button, u"Start Scan"_qs));
    ASSERT_TRUE(QTest::qWaitFor([&] { return reached.isOpen(); }));
    QObject::connect(app->mainWindow(), &QObject::destroyed, [gate] { gate.open(); });

    app.reset();

    EXPECT_EQ(backgroundPool().activeThreadCount(), 0);
}

TEST_F(ScreensTest, ShowsTheCleaningOverTheScreenAndTheReportAfterACancel)
{
    addTree("Caches/browser", 1000);
    const Gate gate;
    machine.files->onRemoval([gate](const FilePath &) { gate.wait(); });
    const Person person = openScanned();
    ASSERT_TRUE(person.click(Button, u"Clean"_qs));
    EXPECT_TRUE(person.sees(Dialog, u"Cleaning..."_qs));
    EXPECT_TRUE(person.reads(u"Removing selected files..."_qs));

    ASSERT_TRUE(person.click(Button, u"Cancel"_qs));
    EXPECT_TRUE(person.seesNo(Dialog, u"Cleaning..."_qs));
    gate.open();

    EXPECT_TRUE(person.reads(u"Cleanup Report"_qs));
}

TEST_F(ScreensTest, BeginsAnewWhenATabIsLeftAndComeBackTo)
{
    addTree("Caches/browser", 1000);
    const Person person = openScanned();

    ASSERT_TRUE(person.click(ListItem, u"History"_qs));
    ASSERT_TRUE(person.click(ListItem, u"Safe Cleanup"_qs));

    EXPECT_TRUE(person.sees(Button, u"Start Scan"_qs));
}

TEST_F(ScreensTest, WalksTheRoadOfASafeCleanupByKeyboardAlone)
{
    addTree("Caches/browser", 1'500'000);
    const Person person = open();

    person.press(Qt::Key_2, Qt::ControlModifier);
    ASSERT_TRUE(person.tabTo(u"Start Scan"_qs));
    person.press(Qt::Key_Return);
    ASSERT_TRUE(person.sees(Button, u"Clean"_qs));
    ASSERT_TRUE(person.tabTo(u"Clean"_qs));
    person.press(Qt::Key_Space);
    ASSERT_TRUE(person.reads(u"Space Freed: 1.5 MB"_qs));
    ASSERT_TRUE(person.isGivenTheKeyboardAt(u"Done"_qs));
    person.press(Qt::Key_Return);
    EXPECT_TRUE(person.reads(u"No items found to clean"_qs));
    ASSERT_TRUE(person.tabTo(u"Safe Cleanup"_qs));
    for (int i = 0; i < 8; ++i)
        person.press(Qt::Key_Down);

    EXPECT_EQ(app->appState().selectedTab(), SidebarTab::History);
    EXPECT_TRUE(person.reads(u"1.5 MB"_qs));
}

TEST_F(ScreensTest, SaysSoWhenThereIsNoHistory)
{
    const Person person = open(SidebarTab::History);

    EXPECT_TRUE(person.reads(u"No history available"_qs));
    EXPECT_TRUE(person.seesNo(Button, u"Export"_qs));
    EXPECT_TRUE(person.seesNo(Button, u"Delete"_qs));
}

TEST_F(ScreensTest, ShowsARecordAndOpensIt)
{
    addTree("Caches/browser", 1'500'000);
    const Person person = openScanned();
    ASSERT_TRUE(person.click(Button, u"Clean"_qs));
    ASSERT_TRUE(person.click(Button, u"Done"_qs));
    ASSERT_TRUE(person.readsNo(u"Cleanup Report"_qs));

    ASSERT_TRUE(person.click(ListItem, u"History"_qs));
    for (const QString &head : {u"Date"_qs, u"Operation Type"_qs, u"Size Cleaned"_qs, u"Status"_qs})
        EXPECT_TRUE(person.reads(head)) << head.toStdString();
    ASSERT_TRUE(person.reads(u"Safe Cleanup, 1.5 MB, Completed"_qs));
    EXPECT_TRUE(person.readsNo(u"Files Removed: 1"_qs));
    ASSERT_TRUE(person.tabToWhatHolds(u"Completed"_qs));
    person.press(Qt::Key_Space);

    EXPECT_TRUE(person.reads(u"Details:"_qs));
    EXPECT_TRUE(person.reads(u"Files Removed: 1"_qs));
    EXPECT_TRUE(person.reads(u"Files Skipped: 0"_qs));
    EXPECT_TRUE(person.reads(u"Categories affected: User Cache"_qs));
}

TEST_F(ScreensTest, ClearsTheHistoryOnlyAfterAYes)
{
    HistoryService history(machine.files);
    OperationLog log;
    log.date = machine.clock->now();
    history.save(log);
    const Person person = open(SidebarTab::History);

    ASSERT_TRUE(person.click(Button, u"Delete"_qs));
    EXPECT_TRUE(person.reads(u"Clear History?"_qs));
    EXPECT_TRUE(person.reads(u"This will permanently delete all operation logs from this application."_qs));
    ASSERT_TRUE(person.click(Button, u"Cancel"_qs));
    EXPECT_TRUE(person.readsNo(u"Clear History?"_qs));
    EXPECT_EQ(history.loadHistory().size(), 1);

    ASSERT_TRUE(person.click(Button, u"Delete"_qs));
    ASSERT_TRUE(person.click(Button, u"Clear All"_qs));
    EXPECT_TRUE(person.reads(u"No history available"_qs));
    EXPECT_TRUE(history.loadHistory().isEmpty());
}

TEST_F(ScreensTest, OffersBothKindsOfExport)
{
    HistoryService history(machine.files);
    OperationLog log;
    log.date = machine.clock->now();
    history.save(log);
    const Person person = open(SidebarTab::History);

    ASSERT_TRUE(person.click(Button, u"Export"_qs));

    EXPECT_TRUE(person.sees(MenuItem, u"Export to CSV"_qs));
    EXPECT_TRUE(person.sees(MenuItem, u"Export to JSON"_qs));
}

TEST_F(ScreensTest, JumpsToTheFirstNineDestinationsByKey)
{
    const Person person = open();

    for (int i = 0; i < 9; ++i) {
        person.press(Qt::Key(Qt::Key_1 + i), Qt::ControlModifier);
        EXPECT_EQ(int(app->appState().selectedTab()), i);
    }
}

TEST_F(ScreensTest, HidesTheWindowByKeyAndKeepsRunning)
{
    const Person person = open();

    person.press(Qt::Key_W, Qt::ControlModifier);

    EXPECT_FALSE(app->mainWindow()->isVisible());
    app->showMainWindow();
    EXPECT_TRUE(app->mainWindow()->isVisible());
}

TEST_F(ScreensTest, OpensTheSettingsWindowByKeyAndClosesItByKey)
{
    const Person person = open();

    person.press(Qt::Key_Comma, Qt::ControlModifier);
    ASSERT_NE(app->settingsWindow(), nullptr);
    ASSERT_TRUE(QTest::qWaitForWindowActive(app->settingsWindow()));
    Person(*app->settingsWindow()).press(Qt::Key_W, Qt::ControlModifier);

    EXPECT_FALSE(app->settingsWindow()->isVisible());
    EXPECT_TRUE(app->mainWindow()->isVisible());
}

TEST_F(ScreensTest, EndsTheProgramByKey)
{
    const Person person = open();
    QTimer::singleShot(0, app.get(), [&] { person.press(Qt::Key_Q, Qt::ControlModifier); });

    EXPECT_EQ(QCoreApplication::exec(), 0);
}

TEST_F(ScreensTest, LooksAnewByKey)
{
    const Person person = openScanned();
    EXPECT_TRUE(person.reads(u"No items found to clean"_qs));
    addTree("Caches/browser", 1000);

    person.press(Qt::Key_F5);

    EXPECT_TRUE(person.reads(u"User Cache"_qs));
}

TEST_F(ScreensTest, HasNamedWindowButtons)
{
    const Person person = open();
    for (const char *key : {"control.minimize", "control.maximize", "control.close"})
        EXPECT_TRUE(person.sees(Button, Localizer::shared().localized(QString::fromLatin1(key)))) << key;

    ASSERT_TRUE(person.click(Button, Localizer::shared().localized(u"control.close"_qs)));

    EXPECT_FALSE(app->mainWindow()->isVisible());
}
