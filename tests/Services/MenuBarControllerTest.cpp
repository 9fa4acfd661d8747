#include "Services/MenuBarController.h"

#include "Fakes/InstalledLocalizer.h"
#include "Fakes/PretendMachine.h"

#include <QTest>

#include <gmock/gmock.h>

using namespace Quillmere;
using testing::ElementsAre;

namespace {

class MenuBarControllerTest : public testing::Test
{
protected:
    void start()
    {
        controller.start(state.get(), status.get());
        sample();
    }

    /// Takes a sample and has it arrive in the menu: one turn of the main queue publishes, the next is told.
    void sample()
    {
        status->start();
        QCoreApplication::processEvents();
        QCoreApplication::processEvents();
    }

    /// The first line with that symbol.
    MenuEntry entry(const QString &symbol)
    {
        for (const MenuEntry &each : machine.statusBar->shown.menu) {
            if (each.symbol == symbol)
                return each;
        }
        ADD_FAILURE() << "no line with " << symbol.toStdString();
        return {};
    }

    /// A line each: its title, or a dash for a separator.
    QStringList lines()
    {
        QStringList lines;
        for (const MenuEntry &each : machine.statusBar->shown.menu)
            lines.append(each.kind == MenuEntry::Kind::Separator ? u"-"_qs : each.title);
        return lines;
    }

    InstalledLocalizer localizer;
    PretendMachine machine;
    std::unique_ptr<AppState> state = std::make_unique<AppState>(machine.defaults);
    PowerManagementService power{machine.assertions, machine.processes, false};
    TrafficMonitorService traffic{machine.host, machine.clock};
    std::unique_ptr<MenuBarStatusService> status = std::make_unique<MenuBarStatusService>(traffic, machine.host);
    int shows = 0;
    int ends = 0;
    MenuBarController controller{*machine.statusBar, power, {[this] { ++shows; }, [this] { ++ends; }}};
};

} // namespace

TEST_F(MenuBarControllerTest, BuildsTheMenuInItsOrder)
{
    start();

    EXPECT_THAT(lines(),
                ElementsAre(u"Quillmere"_qs, u"CPU 0%   RAM 75%   Download Zero KB/s   Upload Zero KB/s"_qs, u"-"_qs,
                            u"CPU: 0%"_qs, u"RAM: 75%"_qs, u"Download: Zero KB/s"_qs, u"Upload: Zero KB/s"_qs,
                            u"Total downloaded: Zero KB"_qs, u"Total uploaded: Zero KB"_qs, u"-"_qs,
                            u"Keep Awake (Prevent Sleep)"_qs, u"-"_qs, u"Open Dashboard"_qs, u"Settings"_qs, u"-"_qs,
                            u"Quit"_qs));
}

TEST_F(MenuBarControllerTest, GivesEachLineItsSymbol)
{
    start();

    QStringList symbols;
    for (const MenuEntry &each : machine.statusBar->shown.menu) {
        if (each.kind == MenuEntry::Kind::Action)
            symbols.append(each.symbol);
    }
    EXPECT_THAT(symbols,
                ElementsAre(u"leaf.circle.fill"_qs, u"info.circle"_qs, u"cpu"_qs, u"memorychip"_qs,
                            u"arrow.down.circle"_qs, u"arrow.up.circle"_qs, u"tray.and.arrow.down"_qs,
                            u"tray.and.arrow.up"_qs, u"bolt.fill"_qs, u"gauge.with.dots.needle.67percent"_qs,
                            u"gearshape"_qs, u"power"_qs));
}

TEST_F(MenuBarControllerTest, EnablesOnlyWhatDoesSomething)
{
    start();

    for (const MenuEntry &each : machine.statusBar->shown.menu)
        EXPECT_EQ(each.isEnabled, each.action != nullptr) << each.title.toStdString();
    EXPECT_TRUE(entry(u"power"_qs).isEnabled);
    EXPECT_FALSE(entry(u"cpu"_qs).isEnabled);
}

TEST_F(MenuBarControllerTest, ShowsOnlyTheIconInThatModeAndTheFigureBesideItInOthers)
{
    start();
    EXPECT_EQ(machine.statusBar->shown.title, QString());
    EXPECT_EQ(machine.statusBar->shown.position, ImagePosition::ImageOnly);

    AppSettings settings = state->settings();
    settings.menuBarDisplayMode = MenuBarDisplayMode::Ram;
    state->setSettings(settings);
    QCoreApplication::processEvents();

    EXPECT_EQ(machine.statusBar->shown.title, u"75%"_qs);
    EXPECT_EQ(machine.statusBar->shown.position, ImagePosition::ImageLeft);
}

TEST_F(MenuBarControllerTest, TellsAllFiguresInTheToolTip)
{
    start();

    EXPECT_EQ(machine.statusBar->shown.toolTip, u"Quillmere - "_qs + status->detailText());
}

TEST_F(MenuBarControllerTest, RebuildsTheMenuFourTimesForOneSample)
{
    start();
    const int before = machine.statusBar->shown.menusSet;

    sample();

    EXPECT_EQ(machine.statusBar->shown.menusSet - before, 4);
}

TEST_F(MenuBarControllerTest, SpeaksANewLanguageWithinOneTurnOfTheMainQueue)
{
    start();

    localizer->setLanguage(Language::Spanish);
    QCoreApplication::processEvents();

    EXPECT_EQ(lines().last(), localizer->localized(u"menu.quit"_qs));
    EXPECT_NE(lines().last(), u"Quit"_qs);
    EXPECT_TRUE(lines().contains(u"Mantener Activo (Sin Reposo)"_qs));
}

TEST_F(MenuBarControllerTest, ChecksKeepAwakeWhileItIsOnWhereverItWasSwitched)
{
    start();
    EXPECT_TRUE(entry(u"bolt.fill"_qs).isCheckable);
    EXPECT_FALSE(entry(u"bolt.fill"_qs).isChecked);

    power.setKeepAwake(true, state.get());
    QCoreApplication::processEvents();

    EXPECT_TRUE(entry(u"bolt.fill"_qs).isChecked);
}

TEST_F(MenuBarControllerTest, SwitchesKeepAwakeAndShowsItAtOnce)
{
    start();

    entry(u"bolt.fill"_qs).action();
    EXPECT_TRUE(power.isKeepAwakeEnabled());
    EXPECT_TRUE(state->settings().keepAwakeEnabled);
    EXPECT_TRUE(entry(u"bolt.fill"_qs).isChecked);

    entry(u"bolt.fill"_qs).action();
    EXPECT_FALSE(power.isKeepAwakeEnabled());
    EXPECT_FALSE(entry(u"bolt.fill"_qs).isChecked);
}

TEST_F(MenuBarControllerTest, FollowsTheStoredKeepAwakeWishWhenItStarts)
{
    AppSettings settings = state->settings();
    settings.keepAwakeEnabled = true;
    state->setSettings(settings);

    start();

    EXPECT_TRUE(power.isKeepAwakeEnabled());
    EXPECT_TRUE(entry(u"bolt.fill"_qs).isChecked);
}

TEST_F(MenuBarControllerTest, ShowsTheItemByTheEndOfItsStart)
{
    controller.start(state.get(), status.get());

    EXPECT_EQ(machine.statusBar->shown.menusSet, 1);
    EXPECT_EQ(lines().last(), u"Quit"_qs);
}

TEST_F(MenuBarControllerTest, AsksForWakefulnessBetweenTheOtherObserversAndItsOwn)
{
    AppSettings settings = state->settings();
    settings.keepAwakeEnabled = true;
    state->setSettings(settings);

    controller.start(state.get(), status.get());
    const int atTheEnd = machine.statusBar->shown.menusSet;
    QCoreApplication::processEvents();

    // The switching itself is not observed yet, and the setting already holds what is switched to.
    EXPECT_EQ(atTheEnd, 1);
    EXPECT_EQ(machine.statusBar->shown.menusSet, 1);
    EXPECT_TRUE(entry(u"bolt.fill"_qs).isChecked);
}

TEST_F(MenuBarControllerTest, OpensTheDashboardAndTheSettingsInTheMainWindow)
{
    start();
    state->setSelectedTab(SidebarTab::Tools);

    entry(u"gauge.with.dots.needle.67percent"_qs).action();
    EXPECT_EQ(state->selectedTab(), SidebarTab::Dashboard);
    EXPECT_EQ(shows, 1);

    entry(u"gearshape"_qs).action();
    EXPECT_EQ(state->selectedTab(), SidebarTab::Settings);
    EXPECT_EQ(shows, 2);
}

TEST_F(MenuBarControllerTest, EndsTheProgram)
{
    start();

    entry(u"power"_qs).action();

    EXPECT_EQ(ends, 1);
}

TEST_F(MenuBarControllerTest, HoldsOnlyTheFixedLinesOnceTheFiguresHaveGone)
{
    start();
    status.reset();

    QStringList titles;
    for (const MenuEntry &each : controller.buildMenu())
        titles.append(each.kind == MenuEntry::Kind::Separator ? u"-"_qs : each.title);

    EXPECT_THAT(titles,
                ElementsAre(u"Quillmere"_qs, u"-"_qs, u"Keep Awake (Prevent Sleep)"_qs, u"-"_qs, u"Open Dashboard"_qs,
                            u"Settings"_qs, u"-"_qs, u"Quit"_qs));
}

TEST_F(MenuBarControllerTest, DoesNothingMoreOnceTheStateHasGone)
{
    start();
    const int before = machine.statusBar->shown.menusSet;
    const MenuEntry keepAwake = entry(u"bolt.fill"_qs);
    const MenuEntry dashboard = entry(u"gauge.with.dots.needle.67percent"_qs);
    state.reset();

    keepAwake.action();
    dashboard.action();
    QCoreApplication::processEvents();

    EXPECT_FALSE(power.isKeepAwakeEnabled());
    EXPECT_EQ(machine.statusBar->shown.menusSet, before);
    EXPECT_EQ(shows, 1);
}

TEST_F(MenuBarControllerTest, KeepsItsOneItemWhenItIsStartedAgain)
{
    start();
    controller.start(state.get(), status.get());
    const int before = machine.statusBar->shown.menusSet;

    sample();

    EXPECT_EQ(machine.statusBar->items, 1);
    EXPECT_EQ(machine.statusBar->shown.menusSet - before, 4);
}
