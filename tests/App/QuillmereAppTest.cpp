#include "App/QuillmereAppFixture.h"

#include <QTest>

using namespace Quillmere;

namespace {

const Appearance &appearanceOf(const QQuickWindow &window)
{
    const int type = qmlTypeId("Quillmere.Support", 1, 0, "Appearance");
    return *qmlEngine(&window)->singletonInstance<Appearance *>(type);
}

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
    app.showSettings();
    const Appearance &main = appearanceOf(*app.mainWindow());
    const Appearance &settings = appearanceOf(*app.settingsWindow());
    EXPECT_FALSE(main.isDark());
    EXPECT_FALSE(settings.isDark());

    machine.appearance->set(ColorScheme::Dark, true);
    EXPECT_TRUE(main.isDark());
    EXPECT_TRUE(main.isReducedMotion());
    EXPECT_TRUE(settings.isDark());
    EXPECT_TRUE(settings.isReducedMotion());

    choose(AppTheme::Light);
    EXPECT_FALSE(main.isDark());
    choose(AppTheme::System);
    EXPECT_TRUE(main.isDark());
}

TEST_F(QuillmereAppTest, GivesTheChosenAppearanceToTheMainWindowAndTheDesktopsToTheSettingsWindow)
{
    ASSERT_TRUE(app.start());
    app.showSettings();
    const QColor light = app.settingsWindow()->color();
    EXPECT_EQ(light, app.mainWindow()->color());

    choose(AppTheme::Dark);
    const QColor dark = app.mainWindow()->color();
    EXPECT_LT(dark.lightness(), light.lightness());
    EXPECT_EQ(app.settingsWindow()->color(), light);

    choose(AppTheme::Light);
    machine.appearance->set(ColorScheme::Dark, false);
    EXPECT_EQ(app.mainWindow()->color(), light);
    EXPECT_EQ(app.settingsWindow()->color(), dark);
}

TEST_F(QuillmereAppTest, ShowsEachWindowInItsAppearanceFromTheFirst)
{
    machine.appearance->set(ColorScheme::Dark, false);
    choose(AppTheme::Light);
    ASSERT_TRUE(app.start());
    app.showSettings();
    EXPECT_FALSE(appearanceOf(*app.mainWindow()).isDark());
    EXPECT_TRUE(appearanceOf(*app.settingsWindow()).isDark());
}

TEST_F(QuillmereAppTest, StartsDarkWhereThatIsChosenOnALightDesktop)
{
    choose(AppTheme::Dark);

    ASSERT_TRUE(app.start());

    EXPECT_TRUE(appearanceOf(*app.mainWindow()).isDark());
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
    EXPECT_TRUE(appearanceOf(*app.mainWindow()).isDark());
}

TEST_F(QuillmereAppTest, GivesMemoryBackOnceItsWindowHasBeenHiddenForAWhile)
{
    ASSERT_TRUE(app.start());
    EXPECT_EQ(*machine.memoryReturns, 0);

    app.mainWindow()->hide();

    EXPECT_TRUE(QTest::qWaitFor([this] { return *machine.memoryReturns == 1; }));
}
