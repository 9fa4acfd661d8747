#include "ViewModels/DashboardViewModel.h"

#include "Fakes/Gate.h"
#include "Fakes/InstalledLocalizer.h"
#include "Fakes/PretendMachine.h"
#include "Utilities/DateFormatter.h"
#include "ViewModels/UnfinishedRuns.h"

#include <QCoro/QCoroCore>
#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>

using namespace Quillmere;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace {

class DashboardViewModelTest : public testing::Test
{
protected:
    DashboardViewModelTest()
    {
        SharedInstance<UnfinishedRuns>::install(&runs);
        machine.installTrafficFilter();
    }
    ~DashboardViewModelTest() override { SharedInstance<UnfinishedRuns>::install(nullptr); }

    std::unique_ptr<DashboardViewModel> made(std::chrono::milliseconds readingTime = 0ms)
    {
        return std::make_unique<DashboardViewModel>(DashboardViewModel::Parts{
            machine.files,
            machine.host,
            machine.processes,
            CleanupService(machine.files, machine.places),
            [this] { return std::make_shared<ScannerService>(machine.files, machine.places); },
            [this] { return std::make_unique<ResourceMonitorService>(machine.workspace, machine.processes, control); },
            traffic,
            control,
            power,
            state,
            readingTime,
        });
    }

    /// A first refresh, and all that follows from it.
    void refresh()
    {
        QSignalSpy refreshed(model.get(), &DashboardViewModel::statsChanged);
        model->startAutoRefresh();
        ASSERT_TRUE(refreshed.wait());
        model->stopAutoRefresh();
    }

    void addCache(const QByteArray &path, qint64 bytes)
    {
        machine.files->addFile(FilePath("/home/ada/Library").appending(path).appending("data"), bytes);
    }

    InstalledLocalizer localizer;
    PretendMachine machine;
    UnfinishedRuns runs;
    AppState state{machine.defaults};
    TrafficMonitorService traffic{machine.host, machine.clock};
    TrafficFilterExtensionManager extension{machine.bundles, machine.files, machine.extensions};
    TrafficControlService control{machine.defaults, machine.filter, extension};
    PowerManagementService power{machine.assertions, machine.processes, false};
    std::unique_ptr<DashboardViewModel> model = made();
};

} // namespace

TEST_F(DashboardViewModelTest, StartsWithNothingMeasuredAndAGoodStatus)
{
    EXPECT_FALSE(model->diskSpace());
    EXPECT_EQ(model->safeCacheSize(), 0);
    EXPECT_EQ(model->systemStatus(), SystemStatus::Good);
    EXPECT_FALSE(model->isLoading());
    EXPECT_FALSE(model->isCleaning());
    EXPECT_FALSE(model->isOptimizing());
    EXPECT_EQ(model->cleaningMessage(), QString());
    EXPECT_EQ(model->trafficStats(), TrafficStats());
    EXPECT_FALSE(model->ecoTrafficEnabled());
    EXPECT_EQ(model->trafficErrorMessage(), QString());
    EXPECT_EQ(model->lastScanText(), QString());
}

TEST_F(DashboardViewModelTest, ShowsAllFiguresAfterTheFirstRefresh)
{
    machine.files->setCapacity(VolumeCapacity{512'110'000'000, 163'840'000'000, 0});

    refresh();

    EXPECT_EQ(model->diskText(), u"68%"_qs);
    EXPECT_EQ(model->usedSpaceText(), u"348.27 GB"_qs);
    EXPECT_EQ(model->freeSpaceText(), u"163.84 GB"_qs);
    EXPECT_EQ(model->ramText(), u"75.0%"_qs);
    EXPECT_EQ(model->formattedRAMInfo(), u"12 GB / 16 GB"_qs);
    EXPECT_EQ(model->currentDownloadText(), u"Zero KB/s"_qs);
    EXPECT_EQ(model->totalUploadText(), u"Zero KB"_qs);
}

TEST_F(DashboardViewModelTest, ReadsNoProcessorLoadAtTheFirstTickAndATrueOneAtTheSecond)
{
    refresh();
    EXPECT_EQ(model->cpuText(), u"0.0%"_qs);

    machine.host->spend(1000, 62);
    refresh();

    EXPECT_EQ(model->cpuText(), u"62.0%"_qs);
    EXPECT_EQ(model->cpuLevel(), LoadLevel::Elevated);
}

TEST_F(DashboardViewModelTest, IsLoadingDuringTheFirstRefreshAlone)
{
    QSignalSpy loading(model.get(), &DashboardViewModel::isLoadingChanged);

    refresh();

    EXPECT_EQ(loading.size(), 2);
    EXPECT_FALSE(model->isLoading());
}

TEST_F(DashboardViewModelTest, MakesNoSecondTimer)
{
    QSignalSpy refreshed(model.get(), &DashboardViewModel::statsChanged);

    model->startAutoRefresh();
    model->startAutoRefresh();
    QCoreApplication::processEvents();

    EXPECT_EQ(refreshed.size(), 1);
}

TEST_F(DashboardViewModelTest, RefreshesAgainWhenItIsStartedAgain)
{
    refresh();
    refresh();

    EXPECT_EQ(machine.files->capacityRequests().size(), 2);
}

struct StatusCase
{
    const char *name;
    double disk;
    double memory;
    SystemStatus status;
};

class SystemStatusTest : public testing::TestWithParam<StatusCase>
{
};

TEST_P(SystemStatusTest, FollowsDiskAndMemory)
{
    EXPECT_EQ(systemStatusOf(GetParam().disk, GetParam().memory), GetParam().status);
}

INSTANTIATE_TEST_SUITE_P(Thresholds, SystemStatusTest,
                         testing::Values(StatusCase{"Nothing", 0, 0, SystemStatus::Good},
                                         StatusCase{"MemoryOfExactlyEighty", 0, 80.0, SystemStatus::Good},
                                         StatusCase{"MemoryAboveEighty", 0, 80.1, SystemStatus::NeedsAttention},
                                         StatusCase{"MemoryOfExactlyNinety", 0, 90.0, SystemStatus::NeedsAttention},
                                         StatusCase{"MemoryAboveNinety", 0, 90.1, SystemStatus::Critical},
                                         StatusCase{"DiskOfExactlyEighty", 0.8, 0, SystemStatus::Good},
                                         StatusCase{"FullerDiskWithLittleMemoryUsed", 0.85, 10,
                                                    SystemStatus::NeedsAttention},
                                         StatusCase{"DiskOfExactlyNinety", 0.9, 0, SystemStatus::NeedsAttention},
                                         StatusCase{"DiskAboveNinety", 0.91, 0, SystemStatus::Critical}),
                         [](const auto &info) { return info.param.name; });

TEST_F(DashboardViewModelTest, KeepsAGoodStatusAtFullProcessorLoad)
{
    machine.host->memory = VmStatistics{quint64{4} << 20, 0, 0};
    refresh();
    machine.host->spend(1000, 100);
    refresh();

    EXPECT_EQ(model->cpuLevel(), LoadLevel::High);
    EXPECT_EQ(model->systemStatus(), SystemStatus::Good);
}

TEST_F(DashboardViewModelTest, ColoursMemoryByItsOwnSteps)
{
    const auto levelAt = [this](quint64 percent) {
        const quint64 pages = machine.host->bytesOfMemory / machine.host->bytesPerPage;
        machine.host->memory = VmStatistics{pages - pages * percent / 100, 0, 0};
        refresh();
        return model->ramLevel();
    };

    EXPECT_EQ(levelAt(69), LoadLevel::Normal);
    EXPECT_EQ(levelAt(71), LoadLevel::Elevated);
    EXPECT_EQ(levelAt(84), LoadLevel::Elevated);
    EXPECT_EQ(levelAt(86), LoadLevel::High);
    EXPECT_EQ(model->systemStatus(), SystemStatus::NeedsAttention);
}

TEST_F(DashboardViewModelTest, ColoursTheDiskAboveEightyAndAboveNinetyPercent)
{
    const auto levelAt = [this](qint64 percent) {
        machine.files->setCapacity(VolumeCapacity{100, 100 - percent, 0});
        refresh();
        return model->diskLevel();
    };

    EXPECT_EQ(levelAt(80), LoadLevel::Normal);
    EXPECT_EQ(levelAt(81), LoadLevel::Elevated);
    EXPECT_EQ(levelAt(90), LoadLevel::Elevated);
    EXPECT_EQ(levelAt(91), LoadLevel::High);
}

TEST_F(DashboardViewModelTest, StaysGoodWithALittleMemoryUsedWhenTheDiskCannotBeAsked)
{
    machine.host->memory = VmStatistics{quint64{4} << 20, 0, 0};
    machine.files->setCapacity(Failure{Failure::Kind::Other, {}, u"no"_qs});

    testing::internal::CaptureStdout();
    refresh();
    testing::internal::GetCapturedStdout();

    EXPECT_EQ(model->systemStatus(), SystemStatus::Good);
    EXPECT_EQ(model->diskText(), u"0%"_qs);
}

TEST_F(DashboardViewModelTest, DeletesSafeCachesForGoodAndNothingElse)
{
    addCache("Caches/com.example.player", 4'000'000);
    addCache("Logs/backup", 2'000'000);

    QCoro::waitFor(model->cleanCaches());

    EXPECT_THAT(machine.files->removed(), ElementsAre(FilePath("/home/ada/Library/Caches/com.example.player")));
    EXPECT_THAT(machine.files->trashed(), IsEmpty());
    EXPECT_FALSE(machine.files->fileExists(FilePath("/home/ada/Library/Application Support/Quillmere/history.json")));
}

TEST_F(DashboardViewModelTest, TellsHowTheFastCleanupGoesOn)
{
    addCache("Caches/com.example.player", 4'000'000);
    QStringList messages;
    QObject::connect(model.get(), &DashboardViewModel::cleaningMessageChanged,
                     [&] { messages.append(model->cleaningMessage()); });

    QCoro::waitFor(model->cleanCaches());

    EXPECT_THAT(messages,
                ElementsAre(u"Scanning for cache files..."_qs, u"Removing caches and temporary logs..."_qs,
                            u"Caches cleaned successfully: 4 MB"_qs));
    EXPECT_FALSE(model->isCleaning());
}

TEST_F(DashboardViewModelTest, LeavesTheOutcomeToBeReadBeforeItGoesOn)
{
    model = made(3s);

    QCoro::Task<> cleaning = model->cleanCaches();
    QTRY_COMPARE(model->cleaningMessage(), u"Caches cleaned successfully: Zero KB"_qs);
    EXPECT_TRUE(model->isCleaning());
    EXPECT_FALSE(model->diskSpace());

    QCoro::waitFor(cleaning);
    EXPECT_FALSE(model->isCleaning());
}

TEST_F(DashboardViewModelTest, RefreshesItsFiguresAfterTheFastCleanup)
{
    QCoro::waitFor(model->cleanCaches());

    EXPECT_TRUE(model->diskSpace());
}

TEST_F(DashboardViewModelTest, EndsACancelledScanWithALineAndRemovesNothing)
{
    addCache("Caches/com.example.player", 4'000'000);
    machine.files->onMeasure([this](const FilePath &) {
        QMetaObject::invokeMethod(
            model.get(), [this] { model->cancelCleanup(); }, Qt::BlockingQueuedConnection);
    });

    testing::internal::CaptureStdout();
    QCoro::waitFor(model->cleanCaches());

    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Fast cache cleanup error: CancellationError\n");
    EXPECT_FALSE(model->isCleaning());
    EXPECT_THAT(machine.files->removed(), IsEmpty());
}

TEST_F(DashboardViewModelTest, CancelsNothingWhileNothingRuns)
{
    model->cancelCleanup();

    EXPECT_FALSE(model->isCleaning());
}

TEST_F(DashboardViewModelTest, IsAnUnfinishedRunWhileItCleans)
{
    const Gate gate;
    addCache("Caches/com.example.player", 4'000'000);
    machine.files->onRemoval([gate](const FilePath &) { gate.wait(); });

    QCoro::Task<> cleaning = model->cleanCaches();
    QTRY_COMPARE(model->cleaningMessage(), u"Removing caches and temporary logs..."_qs);
    EXPECT_FALSE(runs.isEmpty());
    gate.open();
    QCoro::waitFor(cleaning);

    EXPECT_TRUE(runs.isEmpty());
}

TEST_F(DashboardViewModelTest, IsNoUnfinishedRunWhileItScansAndRemovesNothingOnceTheScreenHasGone)
{
    const Gate gate;
    addCache("Caches/com.example.player", 4'000'000);
    machine.files->onMeasure([gate](const FilePath &) { gate.wait(); });
    QCoro::Task<> cleaning = model->cleanCaches();
    EXPECT_TRUE(runs.isEmpty());

    model.reset();
    gate.open();
    QCoro::waitFor(cleaning);

    EXPECT_THAT(machine.files->removed(), IsEmpty());
}

TEST_F(DashboardViewModelTest, RefreshesEveryFiveSecondsAtEachTick)
{
    auto *timer = model->findChild<QTimer *>();
    ASSERT_TRUE(timer);
    EXPECT_EQ(timer->interval(), 5000);
    EXPECT_EQ(timer->timerType(), Qt::VeryCoarseTimer);
    EXPECT_FALSE(timer->isSingleShot());
    model->startAutoRefresh();
    EXPECT_TRUE(timer->isActive());
    QCoreApplication::processEvents();

    QMetaObject::invokeMethod(timer, "timeout");
    EXPECT_EQ(machine.files->capacityRequests().size(), 2);

    model->stopAutoRefresh();
    EXPECT_FALSE(timer->isActive());
}

TEST_F(DashboardViewModelTest, TakesTheEcoSwitchOverFromTheServiceAtEachRefresh)
{
    EXPECT_TRUE(QCoro::waitFor(control.setEcoTrafficEnabled(true)));
    EXPECT_FALSE(model->ecoTrafficEnabled());

    refresh();

    EXPECT_TRUE(model->ecoTrafficEnabled());
}

TEST_F(DashboardViewModelTest, HasATextOfItsOwnForARefusalWhoseReasonWasForgotten)
{
    machine.filter->hold();
    machine.filter->saveError = u"no"_qs;
    QCoro::Task<> switching = model->switchEcoTraffic();
    QTRY_VERIFY(extension.hasCompletedRequest());
    // The next change clears the last error, in the same turn as it is set.
    std::optional<QCoro::Task<bool>> next;
    QObject::connect(&control, &TrafficControlService::lastErrorChanged, &control, [this, &next] {
        if (!next && control.lastError())
            next.emplace(control.setEcoTrafficEnabled(false));
    });
    QCoreApplication::processEvents();
    machine.filter->releaseAll();
    QCoro::waitFor(switching);

    EXPECT_EQ(model->trafficErrorMessage(), u"Unable to change the outbound traffic policy."_qs);
    EXPECT_FALSE(QCoro::waitFor(*next));
}

TEST_F(DashboardViewModelTest, FinishesRemovingWhenTheScreenHasGone)
{
    const Gate gate;
    addCache("Caches/a", 1);
    addCache("Caches/b", 1);
    machine.files->onRemoval([gate](const FilePath &) { gate.wait(); });
    QCoro::Task<> cleaning = model->cleanCaches();
    QTRY_COMPARE(model->cleaningMessage(), u"Removing caches and temporary logs..."_qs);
    model.reset();
    gate.open();

    QCoro::waitFor(cleaning);

    EXPECT_EQ(machine.files->removed().size(), 2);
}

TEST_F(DashboardViewModelTest, NeverClosesAnApplicationWhenItBoosts)
{
    RunningApplication busy;
    busy.processIdentifier = 77;
    busy.localizedName = u"Busy"_qs;
    busy.bundleIdentifier = u"org.example.busy"_qs;
    machine.workspace->start(busy);
    machine.processes->answer(u"/bin/ps"_qs, "PID %CPU RSS\n77 390.0 9000000\n");

    QCoro::waitFor(model->optimize());
    QCoreApplication::processEvents();

    EXPECT_EQ(machine.workspace->listings(), 1);
    EXPECT_THAT(machine.workspace->terminated(), IsEmpty());
}

TEST_F(DashboardViewModelTest, PurgesMemoryWithoutArgumentsAndWithoutAsking)
{
    QCoro::waitFor(model->optimize());

    EXPECT_TRUE(machine.processes->runs().contains(Command{u"/usr/sbin/purge"_qs, {}}));
    EXPECT_THAT(machine.processes->scripts(), IsEmpty());
    EXPECT_TRUE(model->diskSpace());
    EXPECT_FALSE(model->isOptimizing());
}

TEST_F(DashboardViewModelTest, GoesOnWithALineWhenPurgeCannotBeStarted)
{
    machine.processes->answer(u"/usr/sbin/purge"_qs, [](const Command &) {
        return Failure{Failure::Kind::NotFound, FilePath("/usr/sbin/purge"), u"no such file"_qs};
    });

    testing::internal::CaptureStdout();
    QCoro::waitFor(model->optimize());

    EXPECT_EQ(testing::internal::GetCapturedStdout(), "RAM Purge error: no such file (/usr/sbin/purge)\n");
    EXPECT_FALSE(model->isOptimizing());
}

TEST_F(DashboardViewModelTest, LetsBothActionsRunAtOnce)
{
    QCoro::Task<> cleaning = model->cleanCaches();
    QCoro::Task<> optimizing = model->optimize();
    EXPECT_TRUE(model->isCleaning());
    EXPECT_TRUE(model->isOptimizing());

    QCoro::waitFor(cleaning);
    QCoro::waitFor(optimizing);
    EXPECT_FALSE(model->isCleaning());
    EXPECT_FALSE(model->isOptimizing());
}

TEST_F(DashboardViewModelTest, ResetsTrafficForAllWhoShareIt)
{
    machine.host->move(5'000'000, 1'000'000);
    machine.clock->set(machine.clock->now().addSecs(5));
    refresh();
    EXPECT_EQ(model->totalDownloadText(), u"5 MB"_qs);
    EXPECT_EQ(model->currentDownloadText(), u"1 MB/s"_qs);

    model->resetTrafficCalculation();
    EXPECT_EQ(model->trafficStats(), TrafficStats());

    machine.host->move(7'000, 0);
    machine.clock->set(machine.clock->now().addSecs(1));
    EXPECT_EQ(traffic.currentStats(), (TrafficStats{7'000, 0, 7'000, 0}));
}

TEST_F(DashboardViewModelTest, SwitchesEcoTraffic)
{
    QCoro::waitFor(model->switchEcoTraffic());
    EXPECT_TRUE(model->ecoTrafficEnabled());

    QCoro::waitFor(model->switchEcoTraffic());
    EXPECT_FALSE(model->ecoTrafficEnabled());
    EXPECT_EQ(model->trafficErrorMessage(), QString());
}

TEST_F(DashboardViewModelTest, LeavesARefusedEcoSwitchAsItWasAndSaysWhy)
{
    machine.filter->saveError = u"Permission denied."_qs;

    QCoro::waitFor(model->switchEcoTraffic());

    EXPECT_FALSE(model->ecoTrafficEnabled());
    EXPECT_EQ(model->trafficErrorMessage(), u"macOS rejected the outbound traffic policy: Permission denied."_qs);

    model->dismissTrafficError();
    EXPECT_EQ(model->trafficErrorMessage(), QString());
}

TEST_F(DashboardViewModelTest, SwitchesKeepAwakeAndFollowsWhoeverElseDoes)
{
    QSignalSpy changed(model.get(), &DashboardViewModel::isKeptAwakeChanged);

    model->toggleKeepAwake();
    EXPECT_TRUE(model->isKeptAwake());
    EXPECT_TRUE(state.settings().keepAwakeEnabled);

    power.setKeepAwake(false, nullptr);
    EXPECT_FALSE(model->isKeptAwake());
    EXPECT_EQ(changed.size(), 2);
}

TEST_F(DashboardViewModelTest, WritesTheDateOfTheLastScan)
{
    state.setLastScanDate(QDateTime({2026, 11, 21}, {9, 12}));

    EXPECT_EQ(model->lastScanText(), formatAbbreviatedDateAndTime(state.lastScanDate()));
}

TEST_F(DashboardViewModelTest, SpeaksANewLanguageAtOnce)
{
    refresh();
    QSignalSpy changed(model.get(), &DashboardViewModel::statsChanged);

    localizer->setLanguage(Language::Russian);

    EXPECT_EQ(changed.size(), 1);
    EXPECT_TRUE(model->freeSpaceText().endsWith(u"ГБ"));
}
