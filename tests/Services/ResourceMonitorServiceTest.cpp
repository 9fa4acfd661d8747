#include "Services/ResourceMonitorService.h"

#include "Fakes/PretendMachine.h"

#include <QCoro/QCoroCore>
#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>

using namespace Quillmere;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Statistics = ResourceMonitorService::Statistics;
using Habit = PretendSystemExtensionManager::Habit;

const QString ps = u"/bin/ps"_qs;

RunningApplication application(qint32 pid, const QString &name, const std::optional<QString> &identifier)
{
    RunningApplication made;
    made.processIdentifier = pid;
    made.launchTime = 1000;
    made.localizedName = name;
    made.bundleIdentifier = identifier;
    made.bundleLocation = FilePath("/opt").appending(name.toUtf8());
    made.icon = name.toLower();
    return made;
}

class ResourceMonitorServiceTest : public testing::Test
{
protected:
    ResourceMonitorServiceTest()
    {
        machine.installTrafficFilter();
        machine.processes->answer(ps, "  PID %CPU   RSS\n   10  1.5  2048\n   20 120.0 1024\n");
        machine.workspace->start(application(10, u"Editor"_qs, u"org.example.editor"_qs));
        machine.workspace->start(application(20, u"Player"_qs, u"org.example.player"_qs));
        machine.workspace->start(application(30, u"Idler"_qs, u"com.apple.idler"_qs));
    }

    QList<ResourceProcess> refreshed()
    {
        QSignalSpy published(&monitor, &ResourceMonitorService::processesChanged);
        monitor.refreshProcesses();
        EXPECT_TRUE(published.wait());
        return monitor.processes();
    }

    ResourceProcess refreshed(qint32 pid)
    {
        const QList<ResourceProcess> processes = refreshed();
        const auto found = std::ranges::find(processes, pid, &ResourceProcess::pid);
        return found == processes.end() ? ResourceProcess() : *found;
    }

    std::optional<QString> toggled(qint32 pid) { return QCoro::waitFor(monitor.toggleInternetAccess(pid)); }

    PretendMachine machine;
    TrafficFilterExtensionManager extension{machine.bundles, machine.files, machine.extensions};
    TrafficControlService traffic{machine.defaults, machine.filter, extension};
    ResourceMonitorService monitor{machine.workspace, machine.processes, traffic};
};

} // namespace

TEST_F(ResourceMonitorServiceTest, ListsApplicationsTheBusiestFirst)
{
    const QList<ResourceProcess> processes = refreshed();

    ASSERT_EQ(processes.size(), 3);
    EXPECT_EQ(processes[0].name, u"Player"_qs);
    EXPECT_EQ(processes[1].name, u"Editor"_qs);
    EXPECT_EQ(processes[2].name, u"Idler"_qs);
    EXPECT_DOUBLE_EQ(processes[0].cpuUsage, 120);
    EXPECT_EQ(processes[0].memoryUsage, 1024U * 1024);
}

TEST_F(ResourceMonitorServiceTest, TellsWhatIsKnownOfAnApplication)
{
    const ResourceProcess editor = refreshed(10);

    EXPECT_EQ(editor.path, FilePath("/opt/Editor"));
    EXPECT_EQ(editor.icon, u"editor"_qs);
    EXPECT_EQ(editor.networkUsage, 0U);
    EXPECT_TRUE(editor.canQuit);
    EXPECT_FALSE(editor.isSystemProcess);
    EXPECT_FALSE(editor.isInternetBlocked);
}

TEST_F(ResourceMonitorServiceTest, AsksPsForExactlyThreeColumnsOfAllProcesses)
{
    monitor.refreshProcesses();

    EXPECT_THAT(machine.processes->runs(), ElementsAre(Command{ps, {u"-ax"_qs, u"-o"_qs, u"pid,%cpu,rss"_qs}}));
}

TEST_F(ResourceMonitorServiceTest, ShowsNothingUsedForAnApplicationThatPsDoesNotList)
{
    const ResourceProcess idler = refreshed(30);

    EXPECT_EQ(idler.cpuUsage, 0);
    EXPECT_EQ(idler.memoryUsage, 0U);
}

TEST_F(ResourceMonitorServiceTest, GoesOnWithoutFiguresWhenPsCannotBeStarted)
{
    machine.processes->answer(ps, [](const Command &) {
        return Failure{Failure::Kind::NotFound, FilePath("/bin/ps"), u"no such file"_qs};
    });

    testing::internal::CaptureStdout();
    const QList<ResourceProcess> processes = refreshed();

    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Failed to run ps: no such file (/bin/ps)\n");
    ASSERT_EQ(processes.size(), 3);
    EXPECT_EQ(processes[0].name, u"Editor"_qs);
    EXPECT_EQ(processes[0].cpuUsage, 0);
}

TEST_F(ResourceMonitorServiceTest, CallsAnApplicationWithoutANameUnknown)
{
    RunningApplication nameless = application(40, {}, u"org.example.x"_qs);
    nameless.localizedName.reset();
    machine.workspace->start(nameless);

    EXPECT_EQ(refreshed(40).name, u"Unknown"_qs);
}

TEST_F(ResourceMonitorServiceTest, TellsTheSystemsOwnApplicationsByTheirIdentifier)
{
    machine.workspace->start(application(40, u"Nobody"_qs, std::nullopt));
    machine.workspace->start(application(50, u"Lookalike"_qs, u"com.applepie"_qs));

    EXPECT_TRUE(refreshed(30).isSystemProcess);
    EXPECT_FALSE(refreshed(40).isSystemProcess);
    EXPECT_FALSE(refreshed(50).isSystemProcess);
}

TEST_F(ResourceMonitorServiceTest, ShowsABlockedApplicationAsBlocked)
{
    EXPECT_EQ(toggled(10), std::nullopt);

    EXPECT_TRUE(refreshed(10).isInternetBlocked);
    EXPECT_FALSE(refreshed(20).isInternetBlocked);
}

TEST_F(ResourceMonitorServiceTest, ShowsABlockedNameOnlyWithoutAnIdentifierAndCannotChangeIt)
{
    machine.defaults->setStringArray(TrafficControlService::blockedAppNamesKey(), {u"Old"_qs, u"Editor"_qs});
    TrafficControlService stored(machine.defaults, machine.filter, extension);
    ResourceMonitorService old(machine.workspace, machine.processes, stored);
    machine.workspace->start(application(40, u"Old"_qs, std::nullopt));
    QSignalSpy published(&old, &ResourceMonitorService::processesChanged);
    old.refreshProcesses();
    ASSERT_TRUE(published.wait());

    const auto blocked
        = [&](qint32 pid) { return std::ranges::find(old.processes(), pid, &ResourceProcess::pid)->isInternetBlocked; };
    EXPECT_TRUE(blocked(40));
    EXPECT_FALSE(blocked(10));
    EXPECT_EQ(QCoro::waitFor(old.toggleInternetAccess(40)),
              u"This application has no bundle identifier, so macOS cannot safely create an app-specific outbound "
              "rule."_qs);
    EXPECT_THAT(machine.extensions->submitted, IsEmpty());
}

TEST_F(ResourceMonitorServiceTest, ShowsAllButTheAllowedAsBlockedInEcoMode)
{
    machine.workspace->start(application(40, u"Firefox"_qs, u"org.mozilla.firefox"_qs));
    EXPECT_TRUE(QCoro::waitFor(traffic.setEcoTrafficEnabled(true)));

    EXPECT_TRUE(refreshed(10).isInternetBlocked);
    EXPECT_FALSE(refreshed(40).isInternetBlocked);
}

TEST_F(ResourceMonitorServiceTest, AddsARuleToAnEcoBlockedApplicationAtTheFirstPressAndRemovesItAtTheSecond)
{
    EXPECT_TRUE(QCoro::waitFor(traffic.setEcoTrafficEnabled(true)));

    EXPECT_EQ(toggled(10), std::nullopt);
    EXPECT_TRUE(traffic.isExplicitlyBlocked(u"Editor"_qs, u"org.example.editor"_qs));

    EXPECT_EQ(toggled(10), std::nullopt);
    EXPECT_FALSE(traffic.isExplicitlyBlocked(u"Editor"_qs, u"org.example.editor"_qs));
}

TEST_F(ResourceMonitorServiceTest, RefreshesAfterASwitch)
{
    QSignalSpy published(&monitor, &ResourceMonitorService::processesChanged);

    EXPECT_EQ(toggled(10), std::nullopt);

    ASSERT_TRUE(published.size() > 0 || published.wait());
    EXPECT_EQ(monitor.processes().size(), 3);
}

TEST_F(ResourceMonitorServiceTest, SaysThatAnApplicationHasGoneAndRefreshes)
{
    machine.workspace->end(10);
    QSignalSpy published(&monitor, &ResourceMonitorService::processesChanged);

    EXPECT_EQ(toggled(10), u"The selected process is no longer running."_qs);

    ASSERT_TRUE(published.size() > 0 || published.wait());
    EXPECT_EQ(monitor.processes().size(), 2);
    EXPECT_THAT(machine.extensions->submitted, IsEmpty());
}

TEST_F(ResourceMonitorServiceTest, TakesAnApplicationWithoutANameForGone)
{
    RunningApplication nameless = application(40, {}, u"org.example.x"_qs);
    nameless.localizedName.reset();
    machine.workspace->start(nameless);

    EXPECT_EQ(toggled(40), u"The selected process is no longer running."_qs);
}

TEST_F(ResourceMonitorServiceTest, PassesOnWhyARuleWasRefused)
{
    machine.extensions->habit = Habit::NeedApproval;

    EXPECT_EQ(toggled(10),
              u"Allow the Quillmere Traffic Filter in System Settings, then try again. No application "
              "traffic was changed."_qs);
}

TEST_F(ResourceMonitorServiceTest, PublishesLaterThanItReturns)
{
    monitor.refreshProcesses();
    EXPECT_THAT(monitor.processes(), IsEmpty());

    QTRY_COMPARE(monitor.processes().size(), 3);
}

TEST_F(ResourceMonitorServiceTest, RefreshesAtOnceWhenMonitoringStartsAndMakesNoSecondTimer)
{
    monitor.startMonitoring();
    monitor.startMonitoring();

    EXPECT_TRUE(monitor.isMonitoring());
    EXPECT_EQ(machine.workspace->listings(), 1);
}

TEST_F(ResourceMonitorServiceTest, RefreshesEveryTenSecondsAtEachTickUntilItIsStopped)
{
    auto *timer = monitor.findChild<QTimer *>();
    ASSERT_TRUE(timer);
    EXPECT_EQ(timer->interval(), 10'000);
    EXPECT_EQ(timer->timerType(), Qt::VeryCoarseTimer);
    EXPECT_FALSE(timer->isSingleShot());
    monitor.startMonitoring();
    EXPECT_TRUE(timer->isActive());

    QMetaObject::invokeMethod(timer, "timeout");
    EXPECT_EQ(machine.workspace->listings(), 2);

    monitor.stopMonitoring();
    EXPECT_FALSE(timer->isActive());
}

TEST_F(ResourceMonitorServiceTest, KeepsTheListWhenMonitoringStops)
{
    monitor.startMonitoring();
    QTRY_COMPARE(monitor.processes().size(), 3);

    monitor.stopMonitoring();

    EXPECT_FALSE(monitor.isMonitoring());
    EXPECT_EQ(monitor.processes().size(), 3);
}

TEST_F(ResourceMonitorServiceTest, EndsAnApplicationByForce)
{
    EXPECT_TRUE(monitor.forceQuitProcess(10));
    EXPECT_FALSE(monitor.forceQuitProcess(10));

    EXPECT_THAT(machine.workspace->terminated(), ElementsAre(10));
}

TEST_F(ResourceMonitorServiceTest, SaysWhenAnApplicationMayNotBeEnded)
{
    machine.workspace->protect(10);

    EXPECT_FALSE(monitor.forceQuitProcess(10));
    EXPECT_THAT(machine.workspace->terminated(), IsEmpty());
}

TEST_F(ResourceMonitorServiceTest, LeavesAnotherApplicationAloneThatHasComeToTheNumber)
{
    const quint64 listed = refreshed(10).launchTime;
    machine.workspace->end(10);
    RunningApplication other = application(10, u"Other"_qs, u"org.example.other"_qs);
    other.launchTime = listed + 1;
    machine.workspace->start(other);

    EXPECT_FALSE(monitor.forceQuitProcess(10, listed));
    EXPECT_EQ(QCoro::waitFor(monitor.toggleInternetAccess(10, listed)),
              u"The selected process is no longer running."_qs);
    EXPECT_THAT(machine.workspace->terminated(), IsEmpty());
    EXPECT_THAT(machine.extensions->submitted, IsEmpty());
}

TEST_F(ResourceMonitorServiceTest, TakesAnEmptyIdentifierForNoneWhenItLooksForABlockedName)
{
    machine.defaults->setStringArray(TrafficControlService::blockedAppNamesKey(), {u"Old"_qs});
    TrafficControlService stored(machine.defaults, machine.filter, extension);
    ResourceMonitorService old(machine.workspace, machine.processes, stored);
    machine.workspace->start(application(40, u"Old"_qs, QString()));
    QSignalSpy published(&old, &ResourceMonitorService::processesChanged);
    old.refreshProcesses();
    ASSERT_TRUE(published.wait());

    EXPECT_TRUE(std::ranges::find(old.processes(), 40, &ResourceProcess::pid)->isInternetBlocked);
}

TEST_F(ResourceMonitorServiceTest, HasATextOfItsOwnForARefusalWhoseReasonWasForgotten)
{
    machine.filter->hold();
    machine.filter->saveError = u"no"_qs;
    // The next change clears the last error, in the same turn as it is set.
    std::optional<QCoro::Task<bool>> next;
    QObject::connect(&traffic, &TrafficControlService::lastErrorChanged, &traffic, [this, &next] {
        if (!next && traffic.lastError())
            next.emplace(traffic.setEcoTrafficEnabled(false));
    });
    QCoro::Task<std::optional<QString>> toggling = monitor.toggleInternetAccess(10);
    QTRY_VERIFY(extension.hasCompletedRequest());
    QCoreApplication::processEvents();
    machine.filter->releaseAll();

    EXPECT_EQ(QCoro::waitFor(toggling), u"Unable to change the application outbound traffic policy."_qs);
    EXPECT_FALSE(QCoro::waitFor(*next));
}

TEST(ProcessStatisticsTest, ReadsPidLoadAndMemory)
{
    const QHash<qint32, Statistics> statistics
        = ResourceMonitorService::parseStatistics("  PID  %CPU   RSS\n    1   0.0  12345\n  77 250.5 8 more\n");

    EXPECT_EQ(statistics, (QHash<qint32, Statistics>{{1, {0, 12345 * 1024}}, {77, {250.5, 8 * 1024}}}));
}

struct UnreadableOutput
{
    const char *name;
    QByteArray output;
};

class UnreadableOutputTest : public testing::TestWithParam<UnreadableOutput>
{
};

TEST_P(UnreadableOutputTest, YieldsNoEntry)
{
    EXPECT_TRUE(ResourceMonitorService::parseStatistics(GetParam().output).isEmpty());
}

INSTANTIATE_TEST_SUITE_P(Lines, UnreadableOutputTest,
                         testing::Values(UnreadableOutput{"Nothing", ""},
                                         UnreadableOutput{"HeaderAlone", "PID %CPU RSS\n"},
                                         UnreadableOutput{"OneLineWithFigures", "1 2.0 3"},
                                         UnreadableOutput{"HeaderRepeated", "PID %CPU RSS\nPID %CPU RSS\n"},
                                         UnreadableOutput{"TooFewFields", "header\n12 0.5\n"},
                                         UnreadableOutput{"PidWithLetters", "header\n12a 0.5 3\n"},
                                         UnreadableOutput{"PidBeyondItsBits", "header\n2147483648 0.5 3\n"},
                                         UnreadableOutput{"LoadInWords", "header\n12 much 3\n"},
                                         UnreadableOutput{"LoadWithAComma", "header\n12 0,5 3\n"},
                                         UnreadableOutput{"NegativeMemory", "header\n12 0.5 -3\n"},
                                         UnreadableOutput{"LoadThatIsNoNumber", "header\n12 nan 3\n"},
                                         UnreadableOutput{"LoadWithoutEnd", "header\n12 inf 3\n"},
                                         UnreadableOutput{"ReturnBehindTheMemory", "header\n12 0.5 3\r\n"},
                                         UnreadableOutput{"TabBeforeThePid", "header\n\t12 0.5 3\n"},
                                         UnreadableOutput{"PlusBeforeThePid", "header\n+12 0.5 3\n"},
                                         UnreadableOutput{"CutWithinACharacter", "header\n12 0.5 3\n\xc3"},
                                         UnreadableOutput{"NotUtf8", "header\n12 0.5 3\n\xff\xfe\n"}),
                         [](const auto &info) { return info.param.name; });
