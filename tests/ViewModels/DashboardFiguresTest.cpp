#include "Utilities/DateFormatter.h"
#include "ViewModels/DashboardFixture.h"

#include <QCoro/QCoroCore>

using namespace Quillmere;

namespace {

class DashboardFiguresTest : public DashboardFixture
{
};

} // namespace

TEST_F(DashboardFiguresTest, StartsWithNothingMeasuredAndAGoodStatus)
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

TEST_F(DashboardFiguresTest, ShowsAllFiguresAfterTheFirstRefresh)
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

TEST_F(DashboardFiguresTest, ReadsNoProcessorLoadAtTheFirstTickAndATrueOneAtTheSecond)
{
    refresh();
    EXPECT_EQ(model->cpuText(), u"0.0%"_qs);

    machine.host->spend(1000, 62);
    refresh();

    EXPECT_EQ(model->cpuText(), u"62.0%"_qs);
    EXPECT_EQ(model->cpuLevel(), LoadLevel::Elevated);
}

TEST_F(DashboardFiguresTest, IsLoadingDuringTheFirstRefreshAlone)
{
    QSignalSpy loading(model.get(), &DashboardViewModel::isLoadingChanged);

    refresh();

    EXPECT_EQ(loading.size(), 2);
    EXPECT_FALSE(model->isLoading());
}

TEST_F(DashboardFiguresTest, MakesNoSecondTimer)
{
    QSignalSpy refreshed(model.get(), &DashboardViewModel::statsChanged);

    model->startAutoRefresh();
    model->startAutoRefresh();
    QCoreApplication::processEvents();

    EXPECT_EQ(refreshed.size(), 1);
}

TEST_F(DashboardFiguresTest, RefreshesAgainWhenItIsStartedAgain)
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

TEST_F(DashboardFiguresTest, KeepsAGoodStatusAtFullProcessorLoad)
{
    machine.host->memory = VmStatistics{quint64{4} << 20, 0, 0};
    refresh();
    machine.host->spend(1000, 100);
    refresh();

    EXPECT_EQ(model->cpuLevel(), LoadLevel::High);
    EXPECT_EQ(model->systemStatus(), SystemStatus::Good);
}

TEST_F(DashboardFiguresTest, ColoursMemoryByItsOwnSteps)
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

TEST_F(DashboardFiguresTest, ColoursTheDiskAboveEightyAndAboveNinetyPercent)
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

TEST_F(DashboardFiguresTest, StaysGoodWithALittleMemoryUsedWhenTheDiskCannotBeAsked)
{
    machine.host->memory = VmStatistics{quint64{4} << 20, 0, 0};
    machine.files->setCapacity(Failure{Failure::Kind::Other, {}, u"no"_qs});

    testing::internal::CaptureStdout();
    refresh();
    testing::internal::GetCapturedStdout();

    EXPECT_EQ(model->systemStatus(), SystemStatus::Good);
    EXPECT_EQ(model->diskText(), u"0%"_qs);
}

TEST_F(DashboardFiguresTest, RefreshesEveryFiveSecondsAtEachTick)
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

TEST_F(DashboardFiguresTest, TakesTheEcoSwitchOverFromTheServiceAtEachRefresh)
{
    EXPECT_TRUE(QCoro::waitFor(control.setEcoTrafficEnabled(true)));
    EXPECT_FALSE(model->ecoTrafficEnabled());

    refresh();

    EXPECT_TRUE(model->ecoTrafficEnabled());
}

TEST_F(DashboardFiguresTest, ResetsTrafficForAllWhoShareIt)
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

TEST_F(DashboardFiguresTest, WritesTheDateOfTheLastScan)
{
    state.setLastScanDate(QDateTime({2026, 11, 21}, {9, 12}));

    EXPECT_EQ(model->lastScanText(), formatAbbreviatedDateAndTime(state.lastScanDate()));
}

TEST_F(DashboardFiguresTest, SpeaksANewLanguageAtOnce)
{
    refresh();
    QSignalSpy changed(model.get(), &DashboardViewModel::statsChanged);

    localizer->setLanguage(Language::Russian);

    EXPECT_EQ(changed.size(), 1);
    EXPECT_TRUE(model->freeSpaceText().endsWith(u"ГБ"));
}
