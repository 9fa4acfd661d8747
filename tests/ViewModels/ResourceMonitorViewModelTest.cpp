#include "ViewModels/ResourceMonitorViewModel.h"

#include "Fakes/Gate.h"
#include "Fakes/InstalledLocalizer.h"
#include "Fakes/PretendMachine.h"

#include <QCoro/QCoroCore>
#include <QTest>

#include <gmock/gmock.h>

using namespace Quillmere;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class ResourceMonitorViewModelTest : public testing::Test
{
protected:
    void start(qint32 pid, const QString &name, const QString &identifier, const QString &cpu, int kibibytes)
    {
        RunningApplication application;
        application.processIdentifier = pid;
        application.localizedName = name;
        application.bundleIdentifier = identifier;
        machine.workspace->start(application);
        figures += u"%1 %2 %3\n"_qs.arg(pid).arg(cpu).arg(kibibytes).toUtf8();
        machine.processes->answer(u"/bin/ps"_qs, figures);
    }

    /// Four of the user's and one of the system's.
    void startSome()
    {
        start(1, u"Writer 10"_qs, u"org.example.writer"_qs, u"1.0"_qs, 400);
        start(2, u"Writer 2"_qs, u"org.example.old"_qs, u"1.0"_qs, 900);
        start(3, u"Éditeur"_qs, u"org.example.editor"_qs, u"7.5"_qs, 100);
        start(4, u"Indexer"_qs, u"com.apple.indexer"_qs, u"90.0"_qs, 5000);
        start(5, u"player"_qs, u"org.example.player"_qs, u"5.0"_qs, 700);
    }

    /// Another application comes to the number of one that has ended.
    void replaceByAnother(qint32 pid)
    {
        machine.workspace->end(pid);
        RunningApplication stranger;
        stranger.processIdentifier = pid;
        stranger.launchTime = 99;
        stranger.localizedName = u"Stranger"_qs;
        stranger.bundleIdentifier = u"org.example.stranger"_qs;
        machine.workspace->start(stranger);
    }

    void show()
    {
        const int before = machine.workspace->listings();
        model.startMonitoring();
        ASSERT_EQ(machine.workspace->listings(), before + 1);
        QTRY_VERIFY(!model.allProcesses().isEmpty());
    }

    QStringList shown()
    {
        QStringList names;
        for (const ResourceProcess &process : model.processes()->processes())
            names.append(process.name);
        return names;
    }

    QVariant role(int row, ResourceProcessListModel::Role role)
    {
        return model.processes()->data(model.processes()->index(row), role);
    }

    QByteArray figures = "PID %CPU RSS\n";
    InstalledLocalizer localizer;
    PretendMachine machine;
    TrafficFilterExtensionManager extension{machine.bundles, machine.files, machine.extensions};
    TrafficControlService traffic{machine.defaults, machine.filter, extension};
    ResourceMonitorViewModel model{
        std::make_unique<ResourceMonitorService>(machine.workspace, machine.processes, traffic)};
};

} // namespace

TEST_F(ResourceMonitorViewModelTest, StartsWithTheUsersApplicationsByLoadFolded)
{
    EXPECT_EQ(model.filterMode(), FilterMode::UserApps);
    EXPECT_EQ(model.sortField(), SortField::Cpu);
    EXPECT_EQ(model.searchText(), QString());
    EXPECT_FALSE(model.isExpanded());
    EXPECT_FALSE(model.isMonitoring());
    EXPECT_TRUE(model.isEmpty());
    EXPECT_EQ(model.trafficErrorMessage(), QString());
}

TEST_F(ResourceMonitorViewModelTest, FollowsTheServiceThroughTheMainQueue)
{
    startSome();
    model.startMonitoring();
    EXPECT_FALSE(model.isMonitoring());
    EXPECT_TRUE(model.isEmpty());

    QTRY_VERIFY(model.isMonitoring());
    QTRY_VERIFY(!model.isEmpty());

    model.stopMonitoring();
    QTRY_VERIFY(!model.isMonitoring());
    EXPECT_FALSE(model.isEmpty());
}

TEST_F(ResourceMonitorViewModelTest, SortsByLoadAndKeepsTheServicesOrderAmongEquals)
{
    startSome();
    show();

    EXPECT_THAT(shown(), ElementsAre(u"Éditeur"_qs, u"player"_qs, u"Writer 10"_qs, u"Writer 2"_qs));
}

TEST_F(ResourceMonitorViewModelTest, ListsTheSystemsApplicationsOnlyAmongAll)
{
    startSome();
    show();

    model.setFilterMode(FilterMode::All);

    EXPECT_THAT(shown(), ElementsAre(u"Indexer"_qs, u"Éditeur"_qs, u"player"_qs, u"Writer 10"_qs, u"Writer 2"_qs));
}

TEST_F(ResourceMonitorViewModelTest, SortsByMemoryFalling)
{
    startSome();
    show();

    model.setSortField(SortField::Memory);

    EXPECT_THAT(shown(), ElementsAre(u"Writer 2"_qs, u"player"_qs, u"Writer 10"_qs, u"Éditeur"_qs));
}

TEST_F(ResourceMonitorViewModelTest, SortsByNameAsPeopleExpect)
{
    startSome();
    show();

    model.setSortField(SortField::Name);

    EXPECT_THAT(shown(), ElementsAre(u"Éditeur"_qs, u"player"_qs, u"Writer 2"_qs, u"Writer 10"_qs));
}

TEST_F(ResourceMonitorViewModelTest, SearchesNamesWithoutMindingCase)
{
    startSome();
    show();

    model.setSearchText(u"WRITER"_qs);
    EXPECT_THAT(shown(), ElementsAre(u"Writer 10"_qs, u"Writer 2"_qs));

    model.setSearchText(u"éd"_qs);
    EXPECT_THAT(shown(), ElementsAre(u"Éditeur"_qs));

    model.setSearchText(u"ed"_qs);
    EXPECT_THAT(shown(), IsEmpty());

    model.setSearchText(QString());
    EXPECT_EQ(shown().size(), 4);
}

TEST_F(ResourceMonitorViewModelTest, DoesNotFindASystemApplicationAmongTheUsersHoweverExactTheText)
{
    startSome();
    show();

    model.setSearchText(u"Indexer"_qs);
    EXPECT_TRUE(model.isEmpty());

    model.setFilterMode(FilterMode::All);
    EXPECT_THAT(shown(), ElementsAre(u"Indexer"_qs));
}

TEST_F(ResourceMonitorViewModelTest, ShowsFiveRowsAndThirtyWhenExpandedButNeverMore)
{
    for (qint32 pid = 1; pid <= 40; ++pid)
        start(pid, u"App %1"_qs.arg(pid), u"org.example.x"_qs, QString::number(pid), 1);
    show();
    EXPECT_EQ(shown().size(), 5);

    model.setIsExpanded(true);
    EXPECT_EQ(shown().size(), 30);
    EXPECT_EQ(shown().first(), u"App 40"_qs);

    model.setIsExpanded(false);
    EXPECT_EQ(shown().size(), 5);
}

TEST_F(ResourceMonitorViewModelTest, WritesTheFiguresOfARow)
{
    startSome();
    show();

    EXPECT_EQ(role(0, ResourceProcessListModel::CpuTextRole).toString(), u"7.5%"_qs);
    EXPECT_EQ(role(0, ResourceProcessListModel::MemoryTextRole).toString(), u"100 KB"_qs);
    EXPECT_EQ(role(0, ResourceProcessListModel::NetworkTextRole).toString(), u"0 B/s"_qs);
    EXPECT_FALSE(role(0, ResourceProcessListModel::IsNetworkHighRole).toBool());
    EXPECT_TRUE(role(0, ResourceProcessListModel::CanQuitRole).toBool());
}

TEST_F(ResourceMonitorViewModelTest, WritesANameOfControlCharactersInOneHarmlessLine)
{
    start(9, u"Calm\n<b>\u202Eevil</b>\u0007"_qs, u"org.example.odd"_qs, u"99"_qs, 1);
    show();

    const QString shownName = role(0, ResourceProcessListModel::NameRole).toString();
    EXPECT_EQ(shownName, u"Calm\uFFFD<b>\uFFFDevil</b>\uFFFD"_qs);
    model.askToQuit(9);
    EXPECT_TRUE(model.quitConfirmationText().startsWith(shownName + u" (PID: 9)"_qs));
}

TEST_F(ResourceMonitorViewModelTest, MarksALoadAboveFivePercentAndNotFiveItself)
{
    startSome();
    show();

    EXPECT_TRUE(role(0, ResourceProcessListModel::IsCpuHighRole).toBool());
    EXPECT_FALSE(role(1, ResourceProcessListModel::IsCpuHighRole).toBool());
}

TEST_F(ResourceMonitorViewModelTest, WritesARateOnceAnythingMeasuresIt)
{
    ResourceProcess process;
    EXPECT_EQ(formattedNetwork(process), u"0 B/s"_qs);
    process.networkUsage = 1'500'000;
    EXPECT_EQ(formattedNetwork(process), u"1.5 MB/s"_qs);

    ResourceProcessListModel rows(nullptr);
    process.networkUsage = 100'000;
    rows.setProcesses({process});
    EXPECT_FALSE(rows.data(rows.index(0), ResourceProcessListModel::IsNetworkHighRole).toBool());
    process.networkUsage = 100'001;
    rows.setProcesses({process});
    EXPECT_TRUE(rows.data(rows.index(0), ResourceProcessListModel::IsNetworkHighRole).toBool());
}

TEST_F(ResourceMonitorViewModelTest, SaysWhyATrafficRuleWasRefusedUntilItIsDismissed)
{
    startSome();
    show();
    QCoro::waitFor(model.toggle(3));
    EXPECT_TRUE(model.trafficErrorMessage().startsWith(
        u"macOS could not activate the Quillmere Traffic Filter: The traffic-filter extension is missing"));

    model.dismissTrafficError();
    EXPECT_EQ(model.trafficErrorMessage(), QString());
}

TEST_F(ResourceMonitorViewModelTest, ShowsABlockedApplicationAfterItsSwitch)
{
    machine.installTrafficFilter();
    startSome();
    show();

    QCoro::waitFor(model.toggle(3));

    EXPECT_EQ(model.trafficErrorMessage(), QString());
    QTRY_VERIFY(role(0, ResourceProcessListModel::IsInternetBlockedRole).toBool());
}

TEST_F(ResourceMonitorViewModelTest, EndsAnApplicationAndKeepsItsRowUntilTheNextRefresh)
{
    startSome();
    show();

    model.askToQuit(3);
    EXPECT_TRUE(model.showingQuitConfirmation());
    EXPECT_EQ(model.quitConfirmationText(), u"Éditeur (PID: 3)\nAny unsaved changes will be lost."_qs);
    model.confirmQuit();

    EXPECT_FALSE(model.showingQuitConfirmation());
    EXPECT_THAT(machine.workspace->terminated(), ElementsAre(3));
    EXPECT_TRUE(shown().contains(u"Éditeur"_qs));
}

TEST_F(ResourceMonitorViewModelTest, EndsNothingWhenTheQuestionIsDismissed)
{
    startSome();
    show();

    model.askToQuit(3);
    model.dismissQuit();
    model.confirmQuit();

    EXPECT_FALSE(model.showingQuitConfirmation());
    EXPECT_THAT(machine.workspace->terminated(), IsEmpty());
}

TEST_F(ResourceMonitorViewModelTest, LeavesWhoeverCameToTheNumberWhileTheQuestionStoodAlone)
{
    startSome();
    show();
    model.askToQuit(3);
    replaceByAnother(3);
    model.refreshProcesses();
    QTRY_VERIFY(shown().contains(u"Stranger"_qs));

    model.confirmQuit();

    EXPECT_THAT(machine.workspace->terminated(), IsEmpty());
}

TEST_F(ResourceMonitorViewModelTest, MakesNoRuleForWhoeverCameToTheNumberSinceTheListWasShown)
{
    machine.installTrafficFilter();
    startSome();
    show();
    replaceByAnother(3);

    QCoro::waitFor(model.toggle(3));

    EXPECT_EQ(model.trafficErrorMessage(), u"The selected process is no longer running."_qs);
    EXPECT_THAT(traffic.blockedBundleIdentifiers(), IsEmpty());
}

TEST_F(ResourceMonitorViewModelTest, SwitchesNothingWhereItEndsBeforeItKnowsWhom)
{
    machine.installTrafficFilter();
    startSome();
    const Gate gate;
    machine.workspace->onListing([gate](int) { gate.wait(); });
    auto other = std::make_unique<ResourceMonitorViewModel>(
        std::make_unique<ResourceMonitorService>(machine.workspace, machine.processes, traffic));
    QCoro::Task<> toggling = other->toggle(3);
    other.reset();
    gate.open();

    QCoro::waitFor(toggling);
    EXPECT_THAT(machine.extensions->submitted, IsEmpty());
}
