#include "App/ScreensFixture.h"

#include "Fakes/Gate.h"
#include "Utilities/BackgroundWork.h"
#include "ViewModels/DashboardViewModel.h"
#include "ViewModels/ResourceMonitorViewModel.h"

#include <QQuickItem>
#include <QTest>

using namespace Quillmere;
using enum QAccessible::Role;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class DashboardScreenTest : public ScreensFixture
{
protected:
    DashboardScreenTest()
    {
        startApplication(2001, u"Editor"_qs, u"org.example.editor"_qs);
        startApplication(2002, u"Player"_qs, u"org.example.player"_qs);
        startApplication(2003, u"Indexer"_qs, u"com.apple.indexer"_qs);
        machine.processes->answer(u"/bin/ps"_qs, "PID %CPU RSS\n2001 12.5 500000\n2002 3.0 900000\n2003 1 1000\n");
    }

    void startApplication(qint32 pid, const QString &name, const QString &identifier)
    {
        RunningApplication application;
        application.processIdentifier = pid;
        application.localizedName = name;
        application.bundleIdentifier = identifier;
        machine.workspace->start(application);
    }

    /// High enough for the whole screen to be seen without scrolling.
    Person openTall()
    {
        const Person person = open();
        app->mainWindow()->resize(1100, 1400);
        EXPECT_TRUE(QTest::qWaitFor([this] { return app->mainWindow()->contentItem()->height() == 1400; }));
        return person;
    }

    /// Whether both parts of the screen that measure by a clock let it run, or both let it stand.
    [[nodiscard]] bool clocksBecome(bool isRunning) const
    {
        const auto *figures = app->mainWindow()->findChild<DashboardViewModel *>();
        const auto *processes = app->mainWindow()->findChild<ResourceMonitorViewModel *>();
        return figures && processes && QTest::qWaitFor([&] {
                   return figures->findChild<QTimer *>()->isActive() == isRunning
                       && processes->isMonitoring() == isRunning;
               });
    }

    /// The button of a row, told by what stands in the row.
    bool clickInRow(const Person &person, const QString &row, const QString &button)
    {
        const QRect place = person.placeOf([&] { return findInRow(person, row, button); });
        QTest::mouseClick(app->mainWindow(), Qt::LeftButton, Qt::NoModifier, place.center());
        return !place.isEmpty();
    }

    static QAccessibleInterface *findInRow(const Person &person, const QString &row, const QString &button)
    {
        QAccessibleInterface *line = person.findWhatHolds(ListItem, row);
        for (int i = 0; line && i < line->childCount(); ++i) {
            if (line->child(i)->text(QAccessible::Name) == button)
                return line->child(i);
        }
        return nullptr;
    }
};

} // namespace

TEST_F(DashboardScreenTest, OpensOnTheMachinesFigures)
{
    machine.files->setCapacity(VolumeCapacity{512'110'000'000, 163'840'000'000, 0});
    const Person person = openTall();

    EXPECT_TRUE(person.reads(u"System Health"_qs));
    EXPECT_TRUE(person.reads(u"Good"_qs));
    EXPECT_TRUE(person.reads(u"CPU Load, 0.0% / 100%"_qs));
    EXPECT_TRUE(person.reads(u"RAM Load, 12 GB / 16 GB, 75.0% / 100%"_qs));
    EXPECT_TRUE(person.reads(u"Used: 348.27 GB"_qs));
    EXPECT_TRUE(person.reads(u"Free: 163.84 GB"_qs));
    EXPECT_TRUE(person.reads(u"Disk Usage, 68%"_qs));
    EXPECT_TRUE(person.reads(u"Current Download: Zero KB/s"_qs));
}

TEST_F(DashboardScreenTest, SaysThatTheMachineIsInNeed)
{
    machine.files->setCapacity(VolumeCapacity{100, 5, 0});
    const Person person = openTall();

    EXPECT_TRUE(person.reads(u"Critical"_qs));
    EXPECT_TRUE(person.readsNo(u"Good"_qs));
}

TEST_F(DashboardScreenTest, ShowsTheDateOfTheLastScanOnceThereIsOne)
{
    const Person person = openTall();
    EXPECT_TRUE(person.readsNo(u"Last Scan"_qs));

    app->appState().setLastScanDate(machine.clock->now());

    EXPECT_TRUE(person.reads(u"Last Scan"_qs));
}

TEST_F(DashboardScreenTest, ListsTheUsersApplicationsThenAll)
{
    const Person person = openTall();
    EXPECT_TRUE(person.reads(u"Editor, Top CPU 12.5%, Top RAM 488.3 MB, Network 0 B/s"_qs));
    EXPECT_TRUE(person.readsNo(u"Indexer"_qs));

    ASSERT_TRUE(person.click(RadioButton, u"All Processes"_qs));

    EXPECT_TRUE(person.reads(u"Indexer"_qs));
}

TEST_F(DashboardScreenTest, SearchesApplicationsAndClearsTheSearch)
{
    const Person person = openTall();
    ASSERT_TRUE(person.reads(u"Editor, "_qs));
    ASSERT_TRUE(person.click(EditableText, u"Search process or application name..."_qs));
    person.type(u"play"_qs);

    EXPECT_TRUE(person.readsNo(u"Editor, "_qs));
    EXPECT_TRUE(person.reads(u"Player, "_qs));

    ASSERT_TRUE(person.click(Button, u"Clear search"_qs));
    EXPECT_TRUE(person.reads(u"Editor, "_qs));
}

TEST_F(DashboardScreenTest, ShowsTheWaitingTextForASearchThatFindsNothing)
{
    const Person person = openTall();
    ASSERT_TRUE(person.reads(u"Editor, "_qs));
    ASSERT_TRUE(person.click(EditableText, u"Search process or application name..."_qs));
    person.type(u"nothing"_qs);

    EXPECT_TRUE(person.reads(u"Loading..."_qs));
}

TEST_F(DashboardScreenTest, UnfoldsAndFoldsTheList)
{
    for (qint32 pid = 1; pid <= 10; ++pid)
        startApplication(pid, u"App %1"_qs.arg(pid), u"org.example.more"_qs);
    const Person person = openTall();
    ASSERT_TRUE(person.reads(u"Editor, "_qs));
    EXPECT_TRUE(person.readsNo(u"App 10"_qs));

    ASSERT_TRUE(person.click(Button, u"Show More"_qs));
    EXPECT_TRUE(person.reads(u"App 10"_qs));

    app->mainWindow()->resize(1100, 2000);
    ASSERT_TRUE(person.click(Button, u"Show Less"_qs));
    EXPECT_TRUE(person.readsNo(u"App 10"_qs));
}

TEST_F(DashboardScreenTest, AsksBeforeItEndsAnApplicationAndLeavesItOnCancel)
{
    const Person person = openTall();
    ASSERT_TRUE(clickInRow(person, u"Editor"_qs, u"Force Quit Process"_qs));
    EXPECT_TRUE(person.reads(u"Force Quit Process?"_qs));
    EXPECT_TRUE(person.reads(u"Editor (PID: 2001)\nAny unsaved changes will be lost."_qs));

    ASSERT_TRUE(person.click(Button, u"Cancel"_qs));

    EXPECT_TRUE(person.readsNo(u"(PID: 2001)"_qs));
    EXPECT_THAT(machine.workspace->terminated(), IsEmpty());
}

TEST_F(DashboardScreenTest, EndsAnApplicationAfterTheQuestion)
{
    const Person person = openTall();
    ASSERT_TRUE(clickInRow(person, u"Player"_qs, u"Force Quit Process"_qs));
    ASSERT_TRUE(person.reads(u"(PID: 2002)"_qs));
    ASSERT_TRUE(person.tabTo(u"Force Quit Process"_qs));
    person.press(Qt::Key_Return);

    EXPECT_TRUE(QTest::qWaitFor([this] { return !machine.workspace->terminated().isEmpty(); }));
    EXPECT_THAT(machine.workspace->terminated(), ElementsAre(2002));
}

TEST_F(DashboardScreenTest, SaysWhyATrafficRuleWasRefused)
{
    const Person person = openTall();
    ASSERT_TRUE(clickInRow(person, u"Editor"_qs, u"Block Internet Access"_qs));

    EXPECT_TRUE(person.reads(u"Traffic rule was not applied"_qs));
    EXPECT_TRUE(person.reads(u"The traffic-filter extension is missing from this application copy"_qs));

    ASSERT_TRUE(person.click(Button, u"OK"_qs));
    EXPECT_TRUE(person.readsNo(u"Traffic rule was not applied"_qs));
}

TEST_F(DashboardScreenTest, CutsAnApplicationOffAndLetsItBackIn)
{
    machine.installTrafficFilter();
    const Person person = openTall();
    ASSERT_TRUE(clickInRow(person, u"Editor"_qs, u"Block Internet Access"_qs));
    ASSERT_TRUE(clickInRow(person, u"Editor"_qs, u"Unblock Internet Access"_qs));

    ASSERT_TRUE(QTest::qWaitFor([&] { return findInRow(person, u"Editor"_qs, u"Block Internet Access"_qs); }));
    EXPECT_EQ(machine.filter->saves.size(), 2);
}

TEST_F(DashboardScreenTest, SwitchesEcoTrafficOn)
{
    machine.installTrafficFilter();
    const Person person = openTall();

    ASSERT_TRUE(person.click(Button, u"Eco Traffic"_qs));

    EXPECT_TRUE(person.sees(Button, u"Eco Traffic On"_qs));
}

TEST_F(DashboardScreenTest, LeavesARefusedEcoSwitchOffAndSaysWhy)
{
    const Person person = openTall();

    ASSERT_TRUE(person.click(Button, u"Eco Traffic"_qs));

    EXPECT_TRUE(person.reads(u"Outbound traffic policy was not applied"_qs));
    person.press(Qt::Key_Escape);
    EXPECT_TRUE(person.readsNo(u"Outbound traffic policy was not applied"_qs));
    EXPECT_TRUE(person.sees(Button, u"Eco Traffic"_qs));
}

TEST_F(DashboardScreenTest, ResetsTheTotals)
{
    const Person person = openTall();
    machine.host->move(9'000'000, 0);
    app->appState().setSelectedTab(SidebarTab::Tools);
    app->appState().setSelectedTab(SidebarTab::Dashboard);
    ASSERT_TRUE(person.reads(u"Downloaded: 9 MB"_qs));

    ASSERT_TRUE(person.click(Button, u"Reset Traffic"_qs));

    EXPECT_TRUE(person.reads(u"Downloaded: Zero KB"_qs));
}

TEST_F(DashboardScreenTest, CleansCachesUnderItsOverlay)
{
    machine.files->addFile(FilePath("/home/ada/Library/Caches/browser/data"), 4'000'000);
    const Person person = openTall();

    ASSERT_TRUE(person.click(Button, u"Clean Caches"_qs));

    EXPECT_TRUE(person.reads(u"Fast Cleaning..."_qs));
    EXPECT_TRUE(person.reads(u"Caches cleaned successfully: 4 MB"_qs));
    EXPECT_TRUE(person.readsNo(u"Fast Cleaning..."_qs));
    EXPECT_THAT(machine.files->removed(), ElementsAre(FilePath("/home/ada/Library/Caches/browser")));
}

TEST_F(DashboardScreenTest, StopsTheScanOfACleanupByItsButton)
{
    const Gate gate;
    machine.files->addFile(FilePath("/home/ada/Library/Caches/browser/data"), 4'000'000);
    machine.files->onMeasure([gate](const FilePath &) { gate.wait(); });
    const Person person = openTall();
    ASSERT_TRUE(person.click(Button, u"Clean Caches"_qs));
    ASSERT_TRUE(person.reads(u"Scanning for cache files..."_qs));

    ASSERT_TRUE(person.click(Button, u"Cancel"_qs));
    gate.open();

    EXPECT_TRUE(person.readsNo(u"Fast Cleaning..."_qs));
    EXPECT_THAT(machine.files->removed(), IsEmpty());
}

TEST_F(DashboardScreenTest, KeepsTheChosenOrderWhenTheLanguageChanges)
{
    const Person person = openTall();
    ASSERT_TRUE(person.reads(u"Editor, "_qs));
    ASSERT_TRUE(person.click(Button, u"Top RAM"_qs));
    ASSERT_TRUE(person.sees(ComboBox, u"Sort by:, Top RAM"_qs));

    app->localizer().setLanguage(Language::Spanish);

    const QString sortBy = Localizer::shared().localized(u"resource.sortBy"_qs);
    EXPECT_TRUE(person.sees(ComboBox, sortBy + u", "_qs + Localizer::shared().localized(u"dashboard.topRAM"_qs)));
}

TEST_F(DashboardScreenTest, ExplainsEcoTrafficToAssistiveTools)
{
    const Person person = openTall();

    QAccessibleInterface *eco = person.find(Button, u"Eco Traffic"_qs);

    ASSERT_TRUE(eco);
    EXPECT_EQ(eco->text(QAccessible::Description), Localizer::shared().localized(u"traffic.ecoHelp"_qs));
}

TEST_F(DashboardScreenTest, BoostsUnderAnOverlayThatCannotBeCancelled)
{
    const Person person = openTall();

    ASSERT_TRUE(person.click(Button, u"Fast Boost"_qs));

    EXPECT_TRUE(person.reads(u"Reclaiming memory and optimizing CPU load..."_qs));
    EXPECT_TRUE(person.sees(Button, u"Cancel"_qs));
    EXPECT_FALSE(person.canUse(Button, u"Cancel"_qs));
    person.press(Qt::Key_Escape);
    EXPECT_TRUE(person.readsNo(u"Reclaiming memory"_qs));
    EXPECT_THAT(machine.workspace->terminated(), IsEmpty());
}

TEST_F(DashboardScreenTest, LeadsToOtherScreens)
{
    const Person person = openTall();

    ASSERT_TRUE(person.click(Button, u"Detailed Cleanup"_qs));
    EXPECT_EQ(app->appState().selectedTab(), SidebarTab::SafeCleanup);

    const std::pair<QString, SidebarTab> tiles[] = {{u"Safe Cleanup"_qs, SidebarTab::SafeCleanup},
                                                    {u"Large Files"_qs, SidebarTab::LargeFiles},
                                                    {u"Browsers"_qs, SidebarTab::Browsers},
                                                    {u"Startup Items"_qs, SidebarTab::Startup}};
    for (const auto &[name, tab] : tiles) {
        app->appState().setSelectedTab(SidebarTab::Dashboard);
        ASSERT_TRUE(person.click(Button, name)) << name.toStdString();
        EXPECT_EQ(app->appState().selectedTab(), tab);
    }
}

TEST_F(DashboardScreenTest, KeepsTheMachineAwake)
{
    const Person person = openTall();

    ASSERT_TRUE(person.click(Button, u"Keep Awake: OFF"_qs));

    EXPECT_TRUE(person.sees(Button, u"Keep Awake: ON"_qs));
    EXPECT_TRUE(app->appState().settings().keepAwakeEnabled);
    EXPECT_EQ(machine.assertions->active.size(), 1);
}

TEST_F(DashboardScreenTest, IsUsedByTheKeyboardAlone)
{
    const Person person = openTall();
    ASSERT_TRUE(person.reads(u"Editor, "_qs));

    for (const QString &name :
         {u"Reset Traffic"_qs, u"Eco Traffic"_qs, u"Search process or application name..."_qs,
          u"Block Internet Access"_qs, u"Show More"_qs, u"Clean Caches"_qs, u"Keep Awake: OFF"_qs})
        EXPECT_TRUE(person.tabTo(name)) << name.toStdString();
    person.press(Qt::Key_Space);

    EXPECT_TRUE(person.sees(Button, u"Keep Awake: ON"_qs));
}

TEST_F(DashboardScreenTest, MeasuresNothingWhileNobodyCanSeeIt)
{
    const Person person = openTall();
    ASSERT_TRUE(person.reads(u"Editor, "_qs));
    EXPECT_TRUE(clocksBecome(true));

    app->mainWindow()->hide();
    EXPECT_TRUE(clocksBecome(false));
    // A look that is under way counts too, as soon as it comes to it.
    ASSERT_TRUE(backgroundPool().waitForDone(10'000));
    const int listings = machine.workspace->listings();
    const qsizetype requests = machine.files->capacityRequests().size();

    app->showMainWindow();

    EXPECT_TRUE(QTest::qWaitFor([&] { return machine.workspace->listings() == listings + 1; }));
    EXPECT_TRUE(QTest::qWaitFor([&] { return machine.files->capacityRequests().size() == requests + 1; }));
}

TEST_F(DashboardScreenTest, ComesBackFromTheStatusBar)
{
    const Person person = open(SidebarTab::Tools);
    app->mainWindow()->close();
    ASSERT_FALSE(app->mainWindow()->isVisible());
    const auto entry = [this](const QString &symbol) {
        for (const MenuEntry &each : machine.statusBar->shown.menu) {
            if (each.symbol == symbol)
                return each;
        }
        return MenuEntry();
    };
    ASSERT_TRUE(QTest::qWaitFor([&] { return entry(u"gearshape"_qs).action != nullptr; }));

    entry(u"gearshape"_qs).action();
    EXPECT_TRUE(app->mainWindow()->isVisible());
    EXPECT_EQ(app->appState().selectedTab(), SidebarTab::Settings);

    app->mainWindow()->close();
    entry(u"gauge.with.dots.needle.67percent"_qs).action();
    EXPECT_TRUE(app->mainWindow()->isVisible());
    EXPECT_TRUE(person.reads(u"System Health"_qs));
}
