#include "Platform/Linux/System/ProcStat.h"

#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

// A machine of two processors, one of them switched off.
constexpr const char *recordedStat = "cpu  422592 635242 741252 898626 17513 3 6317 2777 40 50\n"
                                     "cpu0 211847 319427 329167 494812 4573 3 753 1441 40 50\n"
                                     "intr 22887467 0 0 0\n"
                                     "ctxt 180025263\n";

} // namespace

TEST(ProcStatTest, CountsWaitingAsIdleAndInterruptsAndStolenTimeAsSystemAndGuestsNotAgain)
{
    EXPECT_EQ(parseProcStat(recordedStat), (CpuTicks{422592, 741252 + 3 + 6317 + 2777, 898626 + 17513, 635242}));
}

TEST(ProcStatTest, ReadsTheFourColumnsOfAVeryOldKernel)
{
    EXPECT_EQ(parseProcStat("cpu 10 20 30 40\ncpu0 10 20 30 40\n"), (CpuTicks{10, 30, 40, 20}));
}

TEST(ProcStatTest, AnswersTheSameOrNothingWhereverTheTextIsCut)
{
    const QByteArrayView text(recordedStat);
    const std::optional<CpuTicks> whole = parseProcStat(text);
    const qsizetype firstLine = text.indexOf('\n') + 1;

    for (qsizetype length = 0; length <= text.size(); ++length)
        EXPECT_EQ(parseProcStat(text.first(length)), length < firstLine ? std::nullopt : whole) << length;
}

TEST(ProcStatTest, AnswersNothingForAnythingElse)
{
    EXPECT_EQ(parseProcStat(""), std::nullopt);
    EXPECT_EQ(parseProcStat("\n\n"), std::nullopt);
    EXPECT_EQ(parseProcStat("cpu 1 2 3\n"), std::nullopt);
    EXPECT_EQ(parseProcStat("cpu0 1 2 3 4\n"), std::nullopt);
    EXPECT_EQ(parseProcStat("cpu 1 2 three 4\n"), std::nullopt);
    EXPECT_EQ(parseProcStat("cpu 1 -2 3 4\n"), std::nullopt);
    EXPECT_EQ(parseProcStat("cpu 1 2 3 18446744073709551616\n"), std::nullopt);
    EXPECT_EQ(parseProcStat(QByteArrayView("\0\xff cpu\n", 8)), std::nullopt);
}
