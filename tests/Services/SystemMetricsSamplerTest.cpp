#include "Services/SystemMetricsSampler.h"

#include "Fakes/PretendHostStatistics.h"

#include <gtest/gtest.h>

#include <limits>

using namespace Quillmere;

namespace {

const Failure refused = {Failure::Kind::Other, {}, u"no"_qs};

class SystemMetricsSamplerTest : public testing::Test
{
protected:
    std::shared_ptr<PretendHostStatistics> host = std::make_shared<PretendHostStatistics>();
    SystemMetricsSampler sampler{host};
};

} // namespace

TEST_F(SystemMetricsSamplerTest, ReportsNoLoadAtFirstAndATrueFigureAtTheSecondQuestion)
{
    EXPECT_EQ(sampler.cpuUsage(), 0);
    host->ticks = CpuTicks{100 + 30, 50 + 20, 800 + 150, 0};
    EXPECT_DOUBLE_EQ(sampler.cpuUsage(), 25);
}

TEST_F(SystemMetricsSamplerTest, CountsNiceTimeAsBusy)
{
    std::ignore = sampler.cpuUsage();
    host->ticks = CpuTicks{100, 50, 800 + 60, 40};

    EXPECT_DOUBLE_EQ(sampler.cpuUsage(), 40);
}

TEST_F(SystemMetricsSamplerTest, ReportsNoLoadWhenNoTickHasPassed)
{
    std::ignore = sampler.cpuUsage();

    EXPECT_EQ(sampler.cpuUsage(), 0);
}

TEST_F(SystemMetricsSamplerTest, AlwaysCoversTheTimeSinceThePreviousQuestion)
{
    std::ignore = sampler.cpuUsage();
    host->spend(100, 90);
    std::ignore = sampler.cpuUsage();
    host->spend(200, 10);

    EXPECT_DOUBLE_EQ(sampler.cpuUsage(), 10);
}

TEST_F(SystemMetricsSamplerTest, KeepsItsTicksWhenTheMachineDoesNotAnswer)
{
    std::ignore = sampler.cpuUsage();
    const CpuTicks before = host->ticks.value();
    host->ticks = refused;
    EXPECT_EQ(sampler.cpuUsage(), 0);
    host->ticks = before;
    host->spend(1000, 30);

    EXPECT_DOUBLE_EQ(sampler.cpuUsage(), 30);
}

TEST_F(SystemMetricsSamplerTest, DoesNotTakeAFailureForTheFirstAnswer)
{
    const CpuTicks before = host->ticks.value();
    host->ticks = refused;
    EXPECT_EQ(sampler.cpuUsage(), 0);
    host->ticks = before;

    EXPECT_EQ(sampler.cpuUsage(), 0);
}

TEST_F(SystemMetricsSamplerTest, FollowsACounterThatStartsOver)
{
    constexpr quint64 most = std::numeric_limits<quint64>::max();
    host->ticks = CpuTicks{most - 9, 0, 0, 0};
    std::ignore = sampler.cpuUsage();
    host->ticks = CpuTicks{15, 0, 75, 0};

    EXPECT_DOUBLE_EQ(sampler.cpuUsage(), 25);
}

TEST_F(SystemMetricsSamplerTest, KeepsTwoWhoPollApart)
{
    SystemMetricsSampler other(host);
    std::ignore = sampler.cpuUsage();
    host->spend(100, 100);

    EXPECT_EQ(other.cpuUsage(), 0);
    EXPECT_DOUBLE_EQ(sampler.cpuUsage(), 100);
}

TEST_F(SystemMetricsSamplerTest, CountsFreeInactiveAndSpeculativePagesAsAvailable)
{
    host->bytesPerPage = 4096;
    host->bytesOfMemory = 4096 * 1000;
    host->memory = VmStatistics{100, 200, 300};

    EXPECT_EQ(sampler.memoryUsage(), (SystemMetricsSampler::MemorySnapshot{4096 * 400, 4096 * 1000, 40}));
}

TEST_F(SystemMetricsSamplerTest, ReportsNothingUsedWhenMoreIsAvailableThanThereIs)
{
    host->bytesOfMemory = 4096 * 1000;
    host->memory = VmStatistics{800, 200, 300};

    EXPECT_EQ(sampler.memoryUsage(), (SystemMetricsSampler::MemorySnapshot{0, 4096 * 1000, 0}));
}

TEST_F(SystemMetricsSamplerTest, ReportsNothingUsedWhenTheMemoryDoesNotAnswer)
{
    host->bytesOfMemory = 1000;
    host->memory = refused;

    EXPECT_EQ(sampler.memoryUsage(), (SystemMetricsSampler::MemorySnapshot{0, 1000, 0}));
}

TEST_F(SystemMetricsSamplerTest, ReportsNothingUsedOfAMachineThatDoesNotSayWhatItHas)
{
    host->bytesOfMemory = 0;

    EXPECT_EQ(sampler.memoryUsage(), (SystemMetricsSampler::MemorySnapshot{0, 0, 0}));
}
