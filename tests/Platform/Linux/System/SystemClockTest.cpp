#include "Platform/Linux/System/SystemClock.h"

#include <gtest/gtest.h>

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
