#include "Services/TrafficMonitorService.h"

#include "Fakes/PretendMachine.h"

#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

class TrafficMonitorServiceTest : public testing::Test
{
protected:
    void pass(qint64 milliseconds) { machine.clock->set(machine.clock->now().addMSecs(milliseconds)); }

    PretendMachine machine;
    TrafficMonitorService monitor{machine.host, machine.clock};
};

} // namespace

TEST_F(TrafficMonitorServiceTest, CountsTotalsFromTheMomentItWasMade)
{
    EXPECT_EQ(monitor.currentStats(), TrafficStats());
}

TEST_F(TrafficMonitorServiceTest, GivesRatesOverTheTimeSinceTheLastSample)
{
    machine.host->move(10'000, 4'000);
    pass(4000);
    EXPECT_EQ(monitor.currentStats(), (TrafficStats{2'500, 1'000, 10'000, 4'000}));

    machine.host->move(3'000, 0);
    pass(2000);
    EXPECT_EQ(monitor.currentStats(), (TrafficStats{1'500, 0, 13'000, 4'000}));
}

TEST_F(TrafficMonitorServiceTest, NeverComputesARateOverLessThanASecond)
{
    machine.host->move(1'000, 500);
    pass(10);
    EXPECT_EQ(monitor.currentStats(), (TrafficStats{1'000, 500, 1'000, 500}));

    machine.host->move(700, 0);
    EXPECT_EQ(monitor.currentStats(), (TrafficStats{700, 0, 1'700, 500}));
}

TEST_F(TrafficMonitorServiceTest, CutsRatesToWholeNumbers)
{
    machine.host->move(1'999, 1);
    pass(2000);

    EXPECT_EQ(monitor.currentStats().currentDownload, 999U);
    EXPECT_EQ(monitor.currentStats().currentUpload, 0U);
}

TEST_F(TrafficMonitorServiceTest, ReportsARateOfNothingForACounterThatHasFallen)
{
    machine.host->move(5'000, 5'000);
    pass(1000);
    std::ignore = monitor.currentStats();
    machine.host->counters.value()[0].received -= 2'000;
    pass(1000);

    EXPECT_EQ(monitor.currentStats(), (TrafficStats{0, 0, 3'000, 5'000}));
}

TEST_F(TrafficMonitorServiceTest, ReportsATotalOfNothingForACounterBelowTheBaseline)
{
    machine.host->counters.value()[0].received = 10;
    pass(1000);

    EXPECT_EQ(monitor.currentStats(), TrafficStats());
}

TEST_F(TrafficMonitorServiceTest, CountsEveryInterfaceThatIsUpAndNotALoopback)
{
    machine.host->counters = QList<InterfaceCounters>{{true, false, true, 0, 0}, {true, false, true, 0, 0}};
    monitor.reset();
    machine.host->counters = QList<InterfaceCounters>{
        {true, false, true, 1'000, 10},  {true, false, true, 2'000, 20},  {true, true, true, 5'000, 50},
        {false, false, true, 7'000, 70}, {true, false, false, 9'000, 90},
    };
    pass(1000);

    EXPECT_EQ(monitor.currentStats(), (TrafficStats{3'000, 30, 3'000, 30}));
}

TEST_F(TrafficMonitorServiceTest, CountsNothingWhenTheInterfacesCannotBeRead)
{
    machine.host->move(5'000, 5'000);
    machine.host->counters = Failure{Failure::Kind::Other, {}, u"no"_qs};
    pass(1000);

    EXPECT_EQ(monitor.currentStats(), TrafficStats());
}

TEST_F(TrafficMonitorServiceTest, CountsSumsBeyondThirtyTwoBits)
{
    machine.host->move(quint64{5} << 32, 0);
    pass(1000);

    EXPECT_EQ(monitor.currentStats().totalDownload, quint64{5} << 32);
}

TEST_F(TrafficMonitorServiceTest, StartsOverWhenItIsReset)
{
    machine.host->move(5'000, 5'000);
    pass(3000);
    monitor.reset();
    machine.host->move(100, 50);
    pass(2000);

    EXPECT_EQ(monitor.currentStats(), (TrafficStats{50, 25, 100, 50}));
}
