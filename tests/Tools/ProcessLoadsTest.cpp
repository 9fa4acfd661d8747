#include "Tools/ps/ProcessLoads.h"

#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

constexpr quint64 second = 1'000'000'000;

ProcessStat process(pid_t pid, quint64 startTime, quint64 ticks)
{
    return {pid, "name", 'S', 1, false, ticks, startTime, 10};
}

Instant at(quint64 seconds)
{
    return {"boot", seconds * second, seconds * second, 100};
}

double loadOf(const LoadSample &sample, pid_t pid)
{
    return sample.processes.value(pid).load;
}

} // namespace

TEST(ProcessLoadsTest, GivesTheLoadOfAWholeLifeAtFirst)
{
    const LoadSample sample = sampleOf({process(7, 1000, 4500)}, at(100), {});

    EXPECT_DOUBLE_EQ(loadOf(sample, 7), 50);
    EXPECT_EQ(sample.instant, 100 * second);
}

TEST(ProcessLoadsTest, GivesTheLoadSinceTheCallBefore)
{
    const LoadSample before = sampleOf({process(7, 1000, 4500), process(8, 0, 0)}, at(100), {});

    const LoadSample sample = sampleOf({process(7, 1000, 4500), process(8, 0, 2500)}, at(110), before);

    EXPECT_DOUBLE_EQ(loadOf(sample, 7), 0);
    EXPECT_DOUBLE_EQ(loadOf(sample, 8), 250);
}

TEST(ProcessLoadsTest, DoesNotCountTheTimeTheMachineSlept)
{
    const LoadSample before = sampleOf({process(7, 1000, 0)}, at(100), {});

    EXPECT_DOUBLE_EQ(loadOf(sampleOf({process(7, 1000, 500)}, {"boot", 5000 * second, 110 * second}, before), 7), 50);
}

TEST(ProcessLoadsTest, DoesNotTakeALaterProcessOfTheSameNumberForTheEarlierOne)
{
    const LoadSample before = sampleOf({process(7, 1000, 100)}, at(100), {});

    EXPECT_DOUBLE_EQ(loadOf(sampleOf({process(7, 10500, 400)}, at(110), before), 7), 80);
}

TEST(ProcessLoadsTest, ForgetsWhatBelongsToAnotherRunOfTheMachineOrTheFuture)
{
    const LoadSample before = sampleOf({process(7, 0, 0)}, at(100), {});
    const QList<ProcessStat> now = {process(7, 0, 1000)};

    EXPECT_DOUBLE_EQ(loadOf(sampleOf(now, {"other", 200 * second, 200 * second}, before), 7), 5);
    EXPECT_DOUBLE_EQ(loadOf(sampleOf(now, at(50), before), 7), 20);
    LoadSample nameless = before;
    nameless.boot.clear();
    EXPECT_DOUBLE_EQ(loadOf(sampleOf(now, {"", 200 * second, 200 * second}, nameless), 7), 5);
}

TEST(ProcessLoadsTest, RepeatsItsFiguresWhenAskedAgainAtOnce)
{
    const LoadSample first = sampleOf({process(7, 0, 0)}, at(100), {});
    const LoadSample second10 = sampleOf({process(7, 0, 500)}, at(110), first);
    Instant soon = at(110);
    soon.awake += second / 10;

    const LoadSample again = sampleOf({process(7, 0, 501)}, soon, second10);

    EXPECT_EQ(again, second10);
}

TEST(ProcessLoadsTest, KeepsTheFigureOfAProcessThatHasJustBegunInBounds)
{
    EXPECT_DOUBLE_EQ(loadOf(sampleOf({process(7, 10000, 1)}, at(100), {}), 7), 100);
}

TEST(ProcessLoadsTest, ListsAllProcessesBelowAHeading)
{
    const QList<ProcessStat> processes = {process(7, 0, 100), process(123456, 0, 20000)};

    EXPECT_EQ(listing(processes, sampleOf(processes, at(100), {}), 4096),
              "    PID  %CPU    RSS\n"
              "      7   1.0     40\n"
              " 123456 200.0     40\n");
}
