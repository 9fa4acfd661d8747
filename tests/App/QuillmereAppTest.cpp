#include "App/QuillmereApp.h"
#include "Fakes/PretendMachine.h"

#include "Utilities/AppSettingsStore.h"
#include "Utilities/BackgroundWork.h"

#include <QSignalSpy>
#include <QTest>
#include <QThread>
#include <QTimer>

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <semaphore>
#include <unistd.h>

using namespace Quillmere;

namespace {

class QuillmereAppTest : public testing::Test
{
protected:
    QuillmereAppTest() { machine.completeSetup(); }

    void choose(AppTheme theme)
    {
        AppSettings settings = app.appState().settings();
        settings.theme = theme;
        app.appState().setSettings(settings);
    }

    /// Handles events until the program is ended, and gives its exit code. Unlike exec(), it always comes back.
    static int handleEvents()
    {
        QTimer::singleShot(std::chrono::minutes(1), qApp, [] { QCoreApplication::exit(9); });
        return QCoreApplication::exec();
    }
    /// The same, with @p acts first. 7 where the program goes on after them.
    template<typename Acts>
    [[nodiscard]] int handleEventsAfter(const Acts &acts)
    {
        QTimer::singleShot(0, &app, [&acts] {
            acts();
            QTimer::singleShot(20, qApp, [] { QCoreApplication::exit(7); });
        });
        return handleEvents();
    }
    void letPass(std::chrono::seconds time) { machine.clock->letPass(time); }

    PretendMachine machine;
    QuillmereApp app{machine.machine()};
};

} // namespace

TEST_F(QuillmereAppTest, OpensTheMainWindowInItsSizeOnTheDashboard)
{
    ASSERT_TRUE(app.start());

    EXPECT_TRUE(app.mainWindow()->isVisible());
    EXPECT_EQ(app.mainWindow()->title(), u"Quillmere"_qs);
    EXPECT_EQ(app.mainWindow()->size(), QSize(1100, 700));
    EXPECT_EQ(app.mainWindow()->minimumSize(), QSize(900, 600));
    EXPECT_EQ(app.appState().selectedTab(), SidebarTab::Dashboard);
}

TEST_F(QuillmereAppTest, SharesItsStateOnceTheContentHasAppeared)
{
    EXPECT_EQ(AppState::shared(), nullptr);

    ASSERT_TRUE(app.start());

    EXPECT_EQ(AppState::shared(), &app.appState());
}

TEST_F(QuillmereAppTest, StartsItsServicesInTheirOrder)
{
    // The dashboard looks at the processors too.
    app.appState().setSelectedTab(SidebarTab::History);
    int looksBefore = 0;
    machine.statusBar->onMake = [&] {
        EXPECT_EQ(AppState::shared(), &app.appState());
        looksBefore = machine.host->looks;
        EXPECT_FALSE(machine.workspace->isObservedForMounts());
    };

    ASSERT_TRUE(app.start());

    EXPECT_EQ(machine.statusBar->items, 1);
    EXPECT_EQ(looksBefore, 1);
    EXPECT_TRUE(machine.workspace->isObservedForMounts());
}

TEST_F(QuillmereAppTest, ShowsTheFiguresOfTheMachineInItsStatusItem)
{
    machine.host->memory = VmStatistics{(quint64{4} << 30) / 4096, 0, 0};

    ASSERT_TRUE(app.start());

    EXPECT_TRUE(QTest::qWaitFor([this] { return machine.statusBar->shown.toolTip.contains(u"RAM 75%"); }))
        << machine.statusBar->shown.toolTip.toStdString();
}

TEST_F(QuillmereAppTest, HidesTheMainWindowOnCloseAndBringsItBackAsItWas)
{
    ASSERT_TRUE(app.start());
    app.appState().setSelectedTab(SidebarTab::History);

    app.mainWindow()->close();
    EXPECT_FALSE(app.mainWindow()->isVisible());

    app.showMainWindow();
    EXPECT_TRUE(app.mainWindow()->isVisible());
    EXPECT_EQ(app.appState().selectedTab(), SidebarTab::History);
}

TEST_F(QuillmereAppTest, ReallyClosesTheSettingsWindow)
{
    ASSERT_TRUE(app.start());
    app.showSettings();
    ASSERT_TRUE(app.settingsWindow()->isVisible());
    EXPECT_EQ(app.settingsWindow()->title(), u"Settings"_qs);

    EXPECT_TRUE(app.settingsWindow()->close());

    EXPECT_FALSE(app.settingsWindow()->isVisible());
    EXPECT_TRUE(app.mainWindow()->isVisible());
    app.showSettings();
    EXPECT_TRUE(app.settingsWindow()->isVisible());
}

TEST_F(QuillmereAppTest, BringsAMaximisedWindowBackMaximised)
{
    ASSERT_TRUE(app.start());
    app.mainWindow()->showMaximized();
    app.mainWindow()->close();
    ASSERT_FALSE(app.mainWindow()->isVisible());

    app.showMainWindow();

    EXPECT_TRUE(app.mainWindow()->isVisible());
    EXPECT_TRUE(app.mainWindow()->windowStates() & Qt::WindowMaximized);
}

TEST_F(QuillmereAppTest, BringsAMinimisedSettingsWindowBack)
{
    ASSERT_TRUE(app.start());
    app.showSettings();
    app.settingsWindow()->showMinimized();
    ASSERT_TRUE(app.settingsWindow()->windowStates() & Qt::WindowMinimized);

    app.showSettings();

    EXPECT_FALSE(app.settingsWindow()->windowStates() & Qt::WindowMinimized);
    EXPECT_TRUE(app.settingsWindow()->isVisible());
}

TEST_F(QuillmereAppTest, LetsTheDesktopDecideOnTheAppearanceUntilASettingDoes)
{
    EXPECT_EQ(app.colorScheme(), std::nullopt);

    choose(AppTheme::Light);
    EXPECT_EQ(app.colorScheme(), ColorScheme::Light);
    choose(AppTheme::Dark);
    EXPECT_EQ(app.colorScheme(), ColorScheme::Dark);
}

TEST_F(QuillmereAppTest, FollowsTheDesktopWhileItRuns)
{
    ASSERT_TRUE(app.start());
    EXPECT_FALSE(Appearance::shared().isDark());

    machine.appearance->set(ColorScheme::Dark, true);
    EXPECT_TRUE(Appearance::shared().isDark());
    EXPECT_TRUE(Appearance::shared().isReducedMotion());

    choose(AppTheme::Light);
    EXPECT_FALSE(Appearance::shared().isDark());
    choose(AppTheme::System);
    EXPECT_TRUE(Appearance::shared().isDark());
}

TEST_F(QuillmereAppTest, GivesAllItsWindowsTheChosenAppearance)
{
    ASSERT_TRUE(app.start());
    app.showSettings();
    const QColor light = app.settingsWindow()->color();
    EXPECT_EQ(light, app.mainWindow()->color());

    choose(AppTheme::Dark);

    EXPECT_LT(app.settingsWindow()->color().lightness(), light.lightness());
    EXPECT_EQ(app.settingsWindow()->color(), app.mainWindow()->color());
}

TEST_F(QuillmereAppTest, AsksTheDesktopForItsAppearanceBeforeTheFirstWindowIsShown)
{
    machine.appearance->onWait([this](std::chrono::milliseconds patience) {
        EXPECT_GT(patience, std::chrono::milliseconds(0));
        EXPECT_LE(patience, std::chrono::milliseconds(150));
        EXPECT_FALSE(app.mainWindow()->isVisible());
        machine.appearance->set(ColorScheme::Dark, false);
    });

    ASSERT_TRUE(app.start());

    EXPECT_TRUE(app.mainWindow()->isVisible());
    EXPECT_TRUE(Appearance::shared().isDark());
}

TEST_F(QuillmereAppTest, WaitsWithItsEndForARunThatIsUnderWay)
{
    ASSERT_TRUE(app.start());
    auto run = std::make_unique<UnfinishedRuns::Token>(UnfinishedRuns::shared());
    QTimer::singleShot(0, &app, [&] { app.quit(); });
    QTimer::singleShot(50, &app, [&] { run.reset(); });

    EXPECT_EQ(handleEvents(), 0);

    EXPECT_EQ(run, nullptr);
    EXPECT_FALSE(app.mainWindow()->isVisible());
}

TEST_F(QuillmereAppTest, ShowsItsWindowWhileItsEndWaitsForARun)
{
    ASSERT_TRUE(app.start());
    const UnfinishedRuns::Token run(UnfinishedRuns::shared());
    app.mainWindow()->close();

    app.quit();

    EXPECT_TRUE(app.mainWindow()->isVisible());
}

TEST_F(QuillmereAppTest, StaysWhenTheWindowIsAskedForBeforeARunHasEnded)
{
    ASSERT_TRUE(app.start());
    auto run = std::make_unique<UnfinishedRuns::Token>(UnfinishedRuns::shared());

    EXPECT_EQ(handleEventsAfter([&] {
                  app.quit();
                  app.showMainWindow();
                  run.reset();
              }),
              7);

    EXPECT_TRUE(app.mainWindow()->isVisible());
}

TEST_F(QuillmereAppTest, StaysWhenTheWindowIsAskedForAfterTwoWishesForTheEnd)
{
    ASSERT_TRUE(app.start());
    auto run = std::make_unique<UnfinishedRuns::Token>(UnfinishedRuns::shared());

    EXPECT_EQ(handleEventsAfter([&] {
                  app.quit();
                  app.quit();
                  app.showMainWindow();
                  run.reset();
              }),
              7);
}

TEST_F(QuillmereAppTest, GivesMemoryBackOnceItsWindowHasBeenHiddenForAWhile)
{
    ASSERT_TRUE(app.start());
    EXPECT_EQ(*machine.memoryReturns, 0);

    app.mainWindow()->hide();

    EXPECT_TRUE(QTest::qWaitFor([this] { return *machine.memoryReturns == 1; }));
}

TEST_F(QuillmereAppTest, EndsAtOnceWhenNothingIsUnderWay)
{
    ASSERT_TRUE(app.start());

    EXPECT_EQ(handleEventsAfter([this] { app.quit(); }), 0);

    EXPECT_FALSE(app.mainWindow()->isVisible());
}

TEST_F(QuillmereAppTest, ComesBackFromItsEventsWhereNothingIsUnderWay)
{
    ASSERT_TRUE(app.start());
    childProcessPool().waitForDone();
    QTimer::singleShot(0, &app, [] { QCoreApplication::exit(7); });

    // Cut off here, the test ends with this code too, which is a failure.
    EXPECT_EQ(app.exec(), 7);
}

TEST_F(QuillmereAppTest, EndsWithTheRunWhenTheWindowWasWantedInBetween)
{
    ASSERT_TRUE(app.start());
    auto run = std::make_unique<UnfinishedRuns::Token>(UnfinishedRuns::shared());
    app.quit();
    app.showMainWindow();
    app.quit();
    QTimer::singleShot(0, &app, [&run] { run.reset(); });

    EXPECT_EQ(handleEvents(), 0);

    EXPECT_FALSE(app.mainWindow()->isVisible());
}

TEST_F(QuillmereAppTest, NeverCutsOffARunThatGoesForwardHoweverOftenTheEndIsWanted)
{
    ASSERT_TRUE(app.start());
    const UnfinishedRuns::Token run(UnfinishedRuns::shared());

    EXPECT_EQ(handleEventsAfter([this] {
                  app.quit();
                  for (int wish = 0; wish < 10; ++wish) {
                      letPass(std::chrono::seconds(45));
                      machine.files->takeStep();
                      app.quit();
                      letPass(std::chrono::seconds(15));
                      app.quit();
                  }
              }),
              7);

    EXPECT_TRUE(app.mainWindow()->isVisible());
}

TEST_F(QuillmereAppTest, CutsARunOffThatHangsWhenTheEndIsWantedAgain)
{
    ASSERT_TRUE(app.start());
    const UnfinishedRuns::Token run(UnfinishedRuns::shared());

    EXPECT_EQ(handleEventsAfter([this] {
                  app.quit();
                  letPass(std::chrono::seconds(30));
                  app.quit();
              }),
              0);
}

TEST_F(QuillmereAppTest, TakesADoubleClickForOneWishForTheEnd)
{
    ASSERT_TRUE(app.start());
    const UnfinishedRuns::Token run(UnfinishedRuns::shared());
    letPass(std::chrono::minutes(1));

    EXPECT_EQ(handleEventsAfter([this] {
                  app.quit();
                  letPass(std::chrono::seconds(2));
                  app.quit();
              }),
              7);
}

TEST_F(QuillmereAppTest, RemembersTheFirstWishForTheEndWhenTheWindowWasAskedForInBetween)
{
    ASSERT_TRUE(app.start());
    const UnfinishedRuns::Token run(UnfinishedRuns::shared());

    EXPECT_EQ(handleEventsAfter([this] {
                  app.quit();
                  app.showMainWindow();
                  letPass(std::chrono::seconds(30));
                  app.quit();
              }),
              0);
}

TEST_F(QuillmereAppTest, RemembersNoWishForTheEndOnceTheRunsItWasAboutHaveEnded)
{
    ASSERT_TRUE(app.start());
    auto run = std::make_unique<UnfinishedRuns::Token>(UnfinishedRuns::shared());

    EXPECT_EQ(handleEventsAfter([&] {
                  app.quit();
                  app.showMainWindow();
                  run.reset();
                  run = std::make_unique<UnfinishedRuns::Token>(UnfinishedRuns::shared());
                  letPass(std::chrono::minutes(1));
                  app.quit();
              }),
              7);
}

TEST_F(QuillmereAppTest, CountsTheWaitForARunWithoutRegardToTheTimeOfDay)
{
    ASSERT_TRUE(app.start());
    const UnfinishedRuns::Token run(UnfinishedRuns::shared());

    EXPECT_EQ(handleEventsAfter([this] {
                  app.quit();
                  machine.clock->set(machine.clock->now().addDays(1));
                  app.quit();
                  machine.clock->set(machine.clock->now().addDays(-2));
              }),
              7);
    EXPECT_EQ(handleEventsAfter([this] {
                  letPass(std::chrono::seconds(30));
                  app.quit();
              }),
              0);
}

/// What ends the process itself. Another process carries each out from the start, since threads do not survive a fork.
class QuillmereAppDeathTest : public QuillmereAppTest
{
protected:
    QuillmereAppDeathTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }

    /// The program from its start until it is ended by @p acts. Who waits for what never comes is ended by the alarm.
    template<typename Acts>
    void live(const Acts &acts)
    {
        alarm(60);
        std::ignore = app.start();
        QTimer::singleShot(0, &app, acts);
        std::ignore = app.exec();
        std::fputs("came back", stderr);
        std::fflush(stderr);
        std::_Exit(8);
    }

    std::binary_semaphore answerOfADeadMount{0};
};

TEST_F(QuillmereAppDeathTest, EndsWhereARunHangsAndTheUserAsksAgain)
{
    const auto endTwice = [this] {
        const UnfinishedRuns::Token run(UnfinishedRuns::shared());
        std::ignore = inBackground([this] { answerOfADeadMount.acquire(); });
        live([this] {
            app.quit();
            letPass(std::chrono::seconds(30));
            app.quit();
        });
    };

    EXPECT_EXIT(endTwice(), testing::ExitedWithCode(0), "");
}

TEST_F(QuillmereAppDeathTest, EndsWhereALookHangs)
{
    const auto end = [this] {
        std::ignore = inBackground([this] { answerOfADeadMount.acquire(); });
        live([this] { app.quit(); });
    };

    EXPECT_EXIT(end(), testing::ExitedWithCode(0), "");
}

TEST_F(QuillmereAppDeathTest, EndsWhereAnotherProgramHangsButNotBeforeAShortLookHasEnded)
{
    const auto end = [this] {
        std::binary_semaphore theEnd(0);
        QObject::connect(qApp, &QCoreApplication::aboutToQuit, [&theEnd] { theEnd.release(); });
        std::ignore = inChildProcess([this] { answerOfADeadMount.acquire(); });
        std::ignore = inBackground([&theEnd] {
            theEnd.acquire();
            QThread::msleep(50);
            std::fputs("looked", stderr);
            std::fflush(stderr);
        });
        live([this] { app.quit(); });
    };

    EXPECT_EXIT(end(), testing::ExitedWithCode(0), "looked");
}

TEST(QuillmereAppAtItsEndTest, HasSentNothingToTheFilterAndUndoesNothing)
{
    PretendMachine machine;
    machine.completeSetup();
    machine.installTrafficFilter();
    machine.defaults->setBoolean(TrafficControlService::ecoTrafficKey(), true);
    machine.defaults->setStringArray(TrafficControlService::blockedBundleIdentifiersKey(), {u"org.example.Draw"_qs});
    AppSettings settings;
    settings.keepAwakeEnabled = true;
    AppSettingsStore::save(settings, *machine.defaults);
    auto app = std::make_unique<QuillmereApp>(machine.machine());

    ASSERT_TRUE(app->start());
    ASSERT_TRUE(QTest::qWaitFor([&machine] { return machine.processes->scripts().size() == 1; }));
    const auto runs = machine.processes->runs();
    const int writes = machine.defaults->writes();
    app.reset();
    elevationPool().waitForDone();

    EXPECT_TRUE(machine.filter->saves.isEmpty());
    EXPECT_TRUE(machine.extensions->submitted.isEmpty());
    EXPECT_EQ(machine.processes->scripts().size(), 1);
    EXPECT_EQ(machine.processes->runs(), runs);
    EXPECT_TRUE(machine.processes->launches().isEmpty());
    EXPECT_EQ(machine.assertions->created, 1);
    EXPECT_EQ(machine.assertions->released, 0);
    EXPECT_EQ(machine.defaults->writes(), writes);
}
