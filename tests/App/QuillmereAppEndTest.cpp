#include "App/QuillmereAppFixture.h"

#include "Utilities/AppSettingsStore.h"
#include "Utilities/BackgroundWork.h"

#include <QTest>
#include <QThread>
#include <QTimer>

#include <cstdio>
#include <cstdlib>
#include <semaphore>
#include <unistd.h>

using namespace Quillmere;

namespace {

class QuillmereAppEndTest : public QuillmereAppTest
{
protected:
    /// Handles events until the program is ended, and gives its exit code. Unlike exec(), it always comes back.
    int handleEvents()
    {
        QTimer::singleShot(std::chrono::minutes(1), &app, [] { QCoreApplication::exit(9); });
        return QCoreApplication::exec();
    }
    /// The same, with @p acts first. 7 where the program goes on after them.
    template<typename Acts>
    [[nodiscard]] int handleEventsAfter(const Acts &acts)
    {
        QTimer::singleShot(0, &app, [this, &acts] {
            acts();
            QTimer::singleShot(20, &app, [] { QCoreApplication::exit(7); });
        });
        return handleEvents();
    }
    void letPass(std::chrono::seconds time) { machine.clock->letPass(time); }
};

} // namespace

TEST_F(QuillmereAppEndTest, WaitsWithItsEndForARunThatIsUnderWay)
{
    ASSERT_TRUE(app.start());
    auto run = std::make_unique<UnfinishedRuns::Token>(UnfinishedRuns::shared());
    QTimer::singleShot(0, &app, [&] { app.quit(); });
    QTimer::singleShot(50, &app, [&] { run.reset(); });

    EXPECT_EQ(handleEvents(), 0);

    EXPECT_EQ(run, nullptr);
    EXPECT_FALSE(app.mainWindow()->isVisible());
}

TEST_F(QuillmereAppEndTest, ShowsItsWindowWhileItsEndWaitsForARun)
{
    ASSERT_TRUE(app.start());
    const UnfinishedRuns::Token run(UnfinishedRuns::shared());
    app.mainWindow()->close();

    app.quit();

    EXPECT_TRUE(app.mainWindow()->isVisible());
}

TEST_F(QuillmereAppEndTest, StaysWhenTheWindowIsAskedForBeforeARunHasEnded)
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

TEST_F(QuillmereAppEndTest, StaysWhenTheWindowIsAskedForAfterTwoWishesForTheEnd)
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

TEST_F(QuillmereAppEndTest, EndsAtOnceWhenNothingIsUnderWay)
{
    ASSERT_TRUE(app.start());

    EXPECT_EQ(handleEventsAfter([this] { app.quit(); }), 0);

    EXPECT_FALSE(app.mainWindow()->isVisible());
}

TEST_F(QuillmereAppEndTest, GoesOnWithNoWindowLeft)
{
    ASSERT_TRUE(app.start());
    app.showSettings();

    EXPECT_EQ(handleEventsAfter([this] {
                  app.mainWindow()->close();
                  app.settingsWindow()->close();
              }),
              7);

    EXPECT_FALSE(app.mainWindow()->isVisible());
    EXPECT_FALSE(app.settingsWindow()->isVisible());
}

TEST_F(QuillmereAppEndTest, ComesBackFromItsEventsWhereNothingIsUnderWay)
{
    ASSERT_TRUE(app.start());
    childProcessPool().waitForDone();
    QTimer::singleShot(0, &app, [] { QCoreApplication::exit(7); });

    // Cut off here, the test ends with this code too, which is a failure.
    EXPECT_EQ(app.exec(), 7);
}

TEST_F(QuillmereAppEndTest, EndsWithTheRunWhenTheWindowWasWantedInBetween)
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

TEST_F(QuillmereAppEndTest, NeverCutsOffARunThatGoesForwardHoweverOftenTheEndIsWanted)
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

TEST_F(QuillmereAppEndTest, CutsARunOffThatHangsWhenTheEndIsWantedAgain)
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

TEST_F(QuillmereAppEndTest, TakesADoubleClickForOneWishForTheEnd)
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

TEST_F(QuillmereAppEndTest, RemembersTheFirstWishForTheEndWhenTheWindowWasAskedForInBetween)
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

TEST_F(QuillmereAppEndTest, RemembersNoWishForTheEndOnceTheRunsItWasAboutHaveEnded)
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

TEST_F(QuillmereAppEndTest, CountsTheWaitForARunWithoutRegardToTheTimeOfDay)
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
class QuillmereAppDeathTest : public QuillmereAppEndTest
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
