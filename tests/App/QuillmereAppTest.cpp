#include "App/QuillmereApp.h"
#include "Fakes/PretendMachine.h"

#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

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

TEST_F(QuillmereAppTest, WaitsWithItsEndForARunThatIsUnderWay)
{
    ASSERT_TRUE(app.start());
    auto run = std::make_unique<UnfinishedRuns::Token>(UnfinishedRuns::shared());
    bool hasEnded = false;
    QTimer::singleShot(0, &app, [&] { app.quit(); });
    QTimer::singleShot(50, &app, [&] {
        EXPECT_FALSE(app.mainWindow()->isVisible());
        hasEnded = true;
        run.reset();
    });

    QCoreApplication::exec();

    EXPECT_TRUE(hasEnded);
}

TEST_F(QuillmereAppTest, StaysWhenTheWindowIsAskedForBeforeARunHasEnded)
{
    ASSERT_TRUE(app.start());
    auto run = std::make_unique<UnfinishedRuns::Token>(UnfinishedRuns::shared());
    QTimer::singleShot(0, &app, [&] {
        app.quit();
        app.showMainWindow();
        run.reset();
        QTimer::singleShot(0, &app, [] { QCoreApplication::exit(7); });
    });

    EXPECT_EQ(QCoreApplication::exec(), 7);
    EXPECT_TRUE(app.mainWindow()->isVisible());
}

TEST_F(QuillmereAppTest, StaysWhenTheWindowIsAskedForAfterTwoWishesForTheEnd)
{
    ASSERT_TRUE(app.start());
    auto run = std::make_unique<UnfinishedRuns::Token>(UnfinishedRuns::shared());
    QTimer::singleShot(0, &app, [&] {
        app.quit();
        app.quit();
        app.showMainWindow();
        run.reset();
        QTimer::singleShot(0, &app, [] { QCoreApplication::exit(7); });
    });

    EXPECT_EQ(QCoreApplication::exec(), 7);
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
    QTimer::singleShot(0, &app, [&] { app.quit(); });

    EXPECT_EQ(QCoreApplication::exec(), 0);
}
