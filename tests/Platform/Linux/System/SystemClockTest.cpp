#include "Platform/Linux/System/SystemClock.h"

#include <gtest/gtest.h>

#include <ctime>

using namespace Quillmere;

TEST(SystemClockTest, TellsTheTimeInUtcBetweenTwoLooksAtTheSystems)
{
    const QDateTime before = QDateTime::currentDateTimeUtc();
    const QDateTime now = SystemClock().now();
    const QDateTime after = QDateTime::currentDateTimeUtc();

    EXPECT_EQ(now.timeSpec(), Qt::UTC);
    EXPECT_GE(now, before);
    EXPECT_LE(now, after);
}

TEST(SystemClockTest, CountsTheTimeThatGoesByWhateverTheTimeOfDayIs)
{
    const auto sinceBoot = [] {
        timespec time = {};
        ::clock_gettime(CLOCK_MONOTONIC, &time);
        return std::chrono::milliseconds(time.tv_sec * 1000 + time.tv_nsec / 1'000'000);
    };
    const auto before = sinceBoot();
    const auto now = SystemClock().elapsed();
    const auto after = sinceBoot();

    EXPECT_GE(now, before);
    EXPECT_LE(now, after);
}
