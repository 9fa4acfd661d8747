#include "ViewModels/StartupViewModel.h"
#include "Fakes/Gate.h"
#include "Fakes/HeldCalls.h"
#include "Fakes/InstalledLocalizer.h"
#include "Fakes/PretendMachine.h"
#include "Utilities/BackgroundWork.h"

#include <QCoro/QCoroTask>
#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>

#include <stdexcept>

using namespace Quillmere;

namespace {

const QString loadError = u"Could not load startup items."_qs;
const QString changeError = u"Could not change this startup item. Administrator privileges may be required."_qs;

class StartupViewModelTest : public testing::Test
{
protected:
    FilePath add(const QByteArray &path, const QByteArray &pairs = {}) const
    {
        const FilePath file(path);
        machine.files->addFile(file, 100, "<plist version=\"1.0\"><dict>" + pairs + "</dict></plist>");
        return file;
    }
    void load() { QCoro::waitFor(model.loadItems()); }
    void switchFirst() { QCoro::waitFor(model.toggleItem(model.items().first())); }
    QVariant role(int row, StartupListModel::Role role) { return model.rows()->data(model.rows()->index(row), role); }

    const QByteArray agents = "/home/ada/Library/LaunchAgents/";
    InstalledLocalizer localizer;
    PretendMachine machine;
    StartupViewModel model{StartupService(machine.files, machine.startupEntries), machine.workspace};
};

} // namespace

TEST_F(StartupViewModelTest, HoldsNothingUntilItLoads)
{
    add(agents + "a.plist");

    EXPECT_TRUE(model.isEmpty());
    EXPECT_FALSE(model.isLoading());
    EXPECT_EQ(model.errorMessage(), std::nullopt);

    load();

    EXPECT_EQ(model.items().size(), 1);
    EXPECT_FALSE(model.isLoading());
}

TEST_F(StartupViewModelTest, SaysThatItLoadsUntilTheItemsAreThere)
{
    const Gate gate;
    machine.startupEntries->onListing([gate] { gate.wait(); });
    add(agents + "a.plist");

    QCoro::Task<> loading = model.loadItems();
    EXPECT_TRUE(model.isLoading());
    EXPECT_TRUE(model.isEmpty());
    gate.open();
    QCoro::waitFor(loading);

    EXPECT_FALSE(model.isLoading());
    EXPECT_FALSE(model.isEmpty());
}

TEST_F(StartupViewModelTest, WritesEachRowInTheLanguageOfTheScreens)
{
    add("/Library/LaunchDaemons/a.plist", "<key>Label</key><string>org.example\n&lt;b>a&lt;/b></string>");
    load();
    QSignalSpy changes(model.rows(), &QAbstractItemModel::dataChanged);

    EXPECT_EQ(role(0, StartupListModel::NameRole).toString(), u"org.example\uFFFD<b>a</b>"_qs);
    EXPECT_EQ(role(0, StartupListModel::PathTextRole).toString(), u"/Library/LaunchDaemons/a.plist"_qs);
    EXPECT_EQ(role(0, StartupListModel::TypeTextRole).toString(), u"Launch Daemon"_qs);
    EXPECT_EQ(role(0, StartupListModel::RiskLevelRole).toInt(), int(RiskLevel::High));
    EXPECT_TRUE(role(0, StartupListModel::IsEnabledRole).toBool());

    localizer->setLanguage(Language::Spanish);
    EXPECT_EQ(role(0, StartupListModel::TypeTextRole).toString(), u"Daemon de inicio"_qs);
    EXPECT_EQ(changes.count(), 1);
}

TEST_F(StartupViewModelTest, SwitchesToTheOppositeAndReadsTheWholeListAgain)
{
    add(agents + "a.plist");
    load();
    const QUuid before = model.items().first().id;
    add(agents + "b.plist");

    switchFirst();

    ASSERT_EQ(model.items().size(), 2);
    EXPECT_FALSE(model.items().first().isEnabled);
    EXPECT_NE(model.items().first().id, before);
    EXPECT_FALSE(model.isLoading());

    switchFirst();
    EXPECT_TRUE(model.items().first().isEnabled);
}

TEST_F(StartupViewModelTest, HasThePlatformSwitchItsEntriesAndTellsWhenItWillNot)
{
    const FilePath file("/home/ada/.config/autostart/a.desktop");
    machine.startupEntries->add({file, u"a"_qs, StartupEntry::Scope::User, true});
    load();

    switchFirst();
    EXPECT_FALSE(model.items().first().isEnabled);

    machine.startupEntries->refuse(file);
    switchFirst();
    EXPECT_FALSE(model.items().first().isEnabled);
    EXPECT_EQ(model.errorMessage(), changeError);
}

TEST_F(StartupViewModelTest, KeepsTheRowsOfTheSameFilesWhenTheyAreReadAgain)
{
    add(agents + "a.plist");
    load();
    const QSignalSpy resets(model.rows(), &QAbstractItemModel::modelReset);
    const QSignalSpy changes(model.rows(), &QAbstractItemModel::dataChanged);

    switchFirst();
    EXPECT_EQ(resets.count(), 0);
    EXPECT_EQ(changes.count(), 1);

    machine.files->vanish(FilePath(agents + "a.plist"));
    load();
    EXPECT_EQ(resets.count(), 1);
    EXPECT_TRUE(model.isEmpty());
}

TEST_F(StartupViewModelTest, ShowsTheBannerAndLeavesTheSwitchOnWhereADaemonMayNotBeWritten)
{
    machine.files->refuse(add("/Library/LaunchDaemons/a.plist"), Failure::Kind::NoPermission);
    load();
    const QList<StartupItem> before = model.items();

    switchFirst();

    EXPECT_EQ(model.errorMessage(), changeError);
    EXPECT_EQ(model.items(), before);
    EXPECT_TRUE(model.items().first().isEnabled);
    EXPECT_FALSE(model.isLoading());
}

TEST_F(StartupViewModelTest, ShowsTheSameBannerWhereTheFileHasVanished)
{
    const FilePath file = add(agents + "a.plist");
    load();
    machine.files->vanish(file);

    switchFirst();

    EXPECT_EQ(model.errorMessage(), changeError);
    EXPECT_EQ(model.items().size(), 1);
}

TEST_F(StartupViewModelTest, KeepsTheErrorUntilItIsDismissedOrTheNextLoad)
{
    machine.files->refuse(add("/Library/LaunchDaemons/a.plist"), Failure::Kind::NoPermission);
    load();
    switchFirst();

    model.dismissError();
    EXPECT_EQ(model.errorMessage(), std::nullopt);

    switchFirst();
    ASSERT_NE(model.errorMessage(), std::nullopt);
    load();
    EXPECT_EQ(model.errorMessage(), std::nullopt);
}

TEST_F(StartupViewModelTest, KeepsTheItemsAndSaysSoWhenLoadingFails)
{
    add(agents + "a.plist");
    load();
    machine.startupEntries->onListing([] { throw std::runtime_error("pretended"); });

    load();

    EXPECT_EQ(model.errorMessage(), loadError);
    EXPECT_EQ(model.items().size(), 1);
    EXPECT_FALSE(model.isLoading());
}

TEST_F(StartupViewModelTest, SaysTheErrorInTheLanguageOfTheScreens)
{
    localizer->setLanguage(Language::Russian);
    machine.startupEntries->onListing([] { throw std::runtime_error("pretended"); });

    load();

    EXPECT_EQ(model.errorText(), u"Не удалось загрузить элементы автозагрузки."_qs);
}

TEST_F(StartupViewModelTest, LetsAnEarlierLoadThatEndsLateChangeNothing)
{
    const HeldCalls held(1);
    machine.startupEntries->onListing([held] { held.pass(); });
    QCoro::Task<> earlier = model.loadItems();
    EXPECT_TRUE(QTest::qWaitFor([&held] { return held.arrived() == 1; }));
    machine.startupEntries->add({FilePath("/etc/xdg/autostart/a.desktop"), u"a"_qs, {}, true});

    load();
    const QUuid id = model.items().first().id;
    held.release(0);
    QCoro::waitFor(earlier);

    EXPECT_EQ(model.items().first().id, id);
    EXPECT_FALSE(model.isLoading());
}

TEST_F(StartupViewModelTest, SwitchesNothingWhileTheRowsAreReadAgain)
{
    const FilePath file = add(agents + "a.plist");
    load();
    const Gate gate;
    machine.startupEntries->onListing([gate] { gate.wait(); });
    QCoro::Task<> loading = model.loadItems();

    model.toggle(0);

    gate.open();
    QCoro::waitFor(loading);
    backgroundPool().waitForDone();
    EXPECT_TRUE(model.items().first().isEnabled);
}

TEST_F(StartupViewModelTest, MayGoWhileItLoads)
{
    const Gate gate;
    machine.startupEntries->onListing([gate] { gate.wait(); });
    auto leaving
        = std::make_unique<StartupViewModel>(StartupService(machine.files, machine.startupEntries), machine.workspace);
    QCoro::Task<> loading = leaving->loadItems();

    leaving.reset();
    gate.open();
    QCoro::waitFor(loading);

    EXPECT_TRUE(loading.isReady());
}

TEST_F(StartupViewModelTest, RevealsTheFileOfTheItemThatARowHandsBack)
{
    const FilePath file = add(agents + "a.plist");
    load();

    model.revealInFinder(role(0, StartupListModel::ItemRole).value<StartupItem>());

    EXPECT_TRUE(QTest::qWaitFor([&] { return machine.workspace->revealed() == QList<FilePath>{file}; }, 10'000));
}

TEST_F(StartupViewModelTest, SwitchesTheItemOfARowAndPassesOverOneThatIsNotThere)
{
    add(agents + "a.plist");
    load();

    model.toggle(-1);
    model.toggle(1);
    EXPECT_FALSE(model.isLoading());
    model.toggle(0);

    EXPECT_TRUE(QTest::qWaitFor([&] { return !model.isLoading() && !model.items().first().isEnabled; }, 10'000));
}
