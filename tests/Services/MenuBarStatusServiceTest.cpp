#include "Services/MenuBarStatusService.h"

#include "Fakes/InstalledLocalizer.h"
#include "Fakes/PretendMachine.h"

#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>

using namespace Quillmere;
using testing::ElementsAre;

namespace {

class MenuBarStatusServiceTest : public testing::Test
{
protected:
    /// Takes a second sample, over ten seconds in which so much happened.
    void sample(quint64 received, quint64 sent, quint64 busyPercent)
    {
        status.start();
        machine.host->move(received, sent);
        machine.host->spend(1000, busyPercent);
        machine.clock->set(machine.clock->now().addSecs(10));
        status.start();
        QCoreApplication::processEvents();
    }

    InstalledLocalizer localizer;
    PretendMachine machine;
    TrafficMonitorService traffic{machine.host, machine.clock};
    MenuBarStatusService status{traffic, machine.host};
};

constexpr quint64 mebibyte = 1'048'576;

} // namespace

TEST_F(MenuBarStatusServiceTest, ShowsNothingUsedBeforeItsStart)
{
    EXPECT_EQ(status.cpuUsage(), 0);
    EXPECT_EQ(status.ramUsage(), 0);
    EXPECT_EQ(status.trafficUsage(), 0);
    EXPECT_EQ(status.trafficStats(), TrafficStats());
}

TEST_F(MenuBarStatusServiceTest, SamplesAtOnceAndPublishesThroughTheMainQueue)
{
    QSignalSpy published(&status, &MenuBarStatusService::trafficUsageChanged);

    status.start();
    EXPECT_EQ(published.size(), 0);

    QTRY_COMPARE(published.size(), 1);
    EXPECT_DOUBLE_EQ(status.ramUsage(), 75);
}

TEST_F(MenuBarStatusServiceTest, PublishesTrafficThenProcessorsThenMemoryThenTheShare)
{
    QStringList order;
    QObject::connect(&status, &MenuBarStatusService::trafficStatsChanged, [&] { order.append(u"stats"_qs); });
    QObject::connect(&status, &MenuBarStatusService::cpuUsageChanged, [&] { order.append(u"cpu"_qs); });
    QObject::connect(&status, &MenuBarStatusService::ramUsageChanged, [&] { order.append(u"ram"_qs); });
    QObject::connect(&status, &MenuBarStatusService::trafficUsageChanged, [&] { order.append(u"share"_qs); });

    status.start();
    QCoreApplication::processEvents();

    EXPECT_THAT(order, ElementsAre(u"stats"_qs, u"cpu"_qs, u"ram"_qs, u"share"_qs));
}

TEST_F(MenuBarStatusServiceTest, SamplesEveryFiveSecondsAtEachTick)
{
    auto *timer = status.findChild<QTimer *>();
    ASSERT_TRUE(timer);
    EXPECT_EQ(timer->interval(), 5000);
    EXPECT_EQ(timer->timerType(), Qt::VeryCoarseTimer);
    EXPECT_FALSE(timer->isSingleShot());
    EXPECT_FALSE(timer->isActive());
    status.start();
    EXPECT_TRUE(timer->isActive());
    QSignalSpy published(&status, &MenuBarStatusService::trafficUsageChanged);
    QCoreApplication::processEvents();

    QMetaObject::invokeMethod(timer, "timeout");
    QCoreApplication::processEvents();

    EXPECT_EQ(published.size(), 2);
}

TEST_F(MenuBarStatusServiceTest, WritesRoundedPercentBesideTheIcon)
{
    sample(26 * mebibyte, 0, 42);

    EXPECT_EQ(status.statusBarTitle(MenuBarDisplayMode::IconOnly), QString());
    EXPECT_EQ(status.statusBarTitle(MenuBarDisplayMode::Cpu), u"42%"_qs);
    EXPECT_EQ(status.statusBarTitle(MenuBarDisplayMode::Ram), u"75%"_qs);
    EXPECT_EQ(status.statusBarTitle(MenuBarDisplayMode::Traffic), u"26%"_qs);
}

TEST_F(MenuBarStatusServiceTest, RoundsHalvesUp)
{
    EXPECT_EQ(roundedPercent(0.49), u"0%"_qs);
    EXPECT_EQ(roundedPercent(0.5), u"1%"_qs);
    EXPECT_EQ(roundedPercent(2.5), u"3%"_qs);
    EXPECT_EQ(roundedPercent(99.5), u"100%"_qs);
}

TEST_F(MenuBarStatusServiceTest, ShowsTheWholeReferenceAtTenMebibytesInBothDirections)
{
    sample(60 * mebibyte, 40 * mebibyte, 0);

    EXPECT_DOUBLE_EQ(status.trafficUsage(), 100);
    EXPECT_EQ(status.statusBarTitle(MenuBarDisplayMode::Traffic), u"100%"_qs);
}

TEST_F(MenuBarStatusServiceTest, NeverShowsMoreThanTheReference)
{
    sample(900 * mebibyte, 0, 0);

    EXPECT_DOUBLE_EQ(status.trafficUsage(), 100);
}

TEST_F(MenuBarStatusServiceTest, WritesAllFiguresInOneLine)
{
    sample(12'000'000, 3'400'000, 7);

    EXPECT_EQ(status.detailText(), u"CPU 7%   RAM 75%   Download 1.2 MB/s   Upload 340 KB/s"_qs);

    localizer->setLanguage(Language::Russian);
    EXPECT_TRUE(status.detailText().contains(u"1,2 МБ/s")) << status.detailText().toStdString();
}
