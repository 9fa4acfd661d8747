#include "Platform/Linux/System/MemInfo.h"

#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

constexpr const char *recorded = "MemTotal:       24684092 kB\n"
                                 "MemFree:        23371156 kB\n"
                                 "MemAvailable:   23845100 kB\n"
                                 "Buffers:            9040 kB\n"
                                 "Cached:           555772 kB\n"
                                 "HugePages_Total:       7\n"
                                 "Shmem:               512 kB\n"
                                 "SReclaimable:      64000 kB\n";

} // namespace

TEST(MemInfoTest, GivesBytes)
{
    EXPECT_EQ(parseMemInfo(recorded), (MemInfo{24684092ull * 1024, 23845100ull * 1024}));
}

TEST(MemInfoTest, AddsUpWhatIsAvailableWhereTheKernelDoesNotSay)
{
    const MemInfo memory = parseMemInfo("MemTotal: 1000 kB\nMemFree: 100 kB\nBuffers: 10 kB\nCached: 200 kB\n"
                                        "SReclaimable: 5 kB\nShmem: 50 kB\n");

    EXPECT_EQ(memory, (MemInfo{1000 * 1024, 265 * 1024}));
}

TEST(MemInfoTest, NeverFallsBelowNothingAvailable)
{
    EXPECT_EQ(parseMemInfo("MemFree: 100 kB\nCached: 20 kB\nShmem: 500 kB\n").available, 0u);
}

TEST(MemInfoTest, KnowsNothingOfWhatIsMissing)
{
    EXPECT_EQ(parseMemInfo(""), MemInfo());
    EXPECT_EQ(parseMemInfo("Buffers: 3 kB\n"), MemInfo());
    EXPECT_EQ(parseMemInfo("MemTotal: 3 kB\n"), (MemInfo{3 * 1024, std::nullopt}));
}

TEST(MemInfoTest, LeavesOutFiguresThatAreNone)
{
    EXPECT_EQ(parseMemInfo("MemTotal: many kB\nMemAvailable: 18446744073709551615 kB\n"), MemInfo());
    EXPECT_EQ(parseMemInfo("MemTotal: 99999999999999999999999 kB\nMemAvailable: -4 kB\n"), MemInfo());
    EXPECT_EQ(parseMemInfo("MemTotal: 12\n: 13 kB\nMemAvailable 14 kB\n"), MemInfo());
}

TEST(MemInfoTest, NeverReadsHalfANumberWhereverTheTextIsCut)
{
    const QByteArrayView text(recorded);
    const MemInfo whole = parseMemInfo(text);

    for (qsizetype length = 0; length <= text.size(); ++length) {
        const MemInfo cut = parseMemInfo(text.first(length));
        EXPECT_TRUE(!cut.total || cut.total == whole.total) << length;
        EXPECT_TRUE(!cut.available || cut.available == whole.available || *cut.available == 23371156ull * 1024)
            << length;
    }
}
