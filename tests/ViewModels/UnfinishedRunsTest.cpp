#include "ViewModels/UnfinishedRuns.h"
#include "Fakes/PretendMachine.h"

#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

using namespace Quillmere;

namespace {

/// Counts how often it was asked.
class AskedClock final : public Clock
{
public:
    [[nodiscard]] QDateTime now() const override { return {}; }
    [[nodiscard]] std::chrono::milliseconds elapsed() const override
    {
        ++questions;
        return time;
    }

    mutable int questions = 0;
    std::chrono::milliseconds time{0};
};

class UnfinishedRunsTest : public testing::Test
{
protected:
    void letPass(std::chrono::seconds time) { clock->time += time; }

    std::shared_ptr<AskedClock> clock = std::make_shared<AskedClock>();
    std::shared_ptr<PretendFileManager> files = std::make_shared<PretendFileManager>();
    UnfinishedRuns runs{files, clock};
};

} // namespace

TEST_F(UnfinishedRunsTest, TellsWhenTheLastOfThemHasEnded)
{
    const QSignalSpy finished(&runs, &UnfinishedRuns::finished);
    auto one = std::make_unique<UnfinishedRuns::Token>(runs);
    auto other = std::make_unique<UnfinishedRuns::Token>(runs);

    one.reset();
    EXPECT_EQ(finished.count(), 0);
    EXPECT_FALSE(runs.isEmpty());
    other.reset();

    EXPECT_EQ(finished.count(), 1);
    EXPECT_TRUE(runs.isEmpty());
}

TEST_F(UnfinishedRunsTest, HangAfterHalfAMinuteWithoutAStep)
{
    const UnfinishedRuns::Token run(runs);

    letPass(std::chrono::seconds(29));
    EXPECT_FALSE(runs.areHanging());
    letPass(std::chrono::seconds(1));
    EXPECT_TRUE(runs.areHanging());
}

TEST_F(UnfinishedRunsTest, DoNotHangWhereThereAreNone)
{
    letPass(std::chrono::hours(1));

    EXPECT_FALSE(runs.areHanging());
}

TEST_F(UnfinishedRunsTest, GoForwardWithEachStepOnADisk)
{
    const UnfinishedRuns::Token run(runs);
    letPass(std::chrono::minutes(1));
    ASSERT_TRUE(runs.areHanging());

    files->takeStep();

    EXPECT_FALSE(runs.areHanging());
    letPass(std::chrono::seconds(30));
    EXPECT_TRUE(runs.areHanging());
}

TEST_F(UnfinishedRunsTest, GoForwardWhenAnotherBeginsOrEnds)
{
    const UnfinishedRuns::Token run(runs);
    letPass(std::chrono::seconds(20));
    auto other = std::make_unique<UnfinishedRuns::Token>(runs);
    letPass(std::chrono::seconds(20));
    EXPECT_FALSE(runs.areHanging());
    other.reset();

    letPass(std::chrono::seconds(20));

    EXPECT_FALSE(runs.areHanging());
}

TEST_F(UnfinishedRunsTest, KnowOfAStepFromTheTimeWhenItWasTaken)
{
    UnfinishedRuns watched(files, clock, std::chrono::milliseconds(1));
    const UnfinishedRuns::Token run(watched);
    files->takeStep();
    ASSERT_TRUE(QTest::qWaitFor([this, before = clock->questions] { return clock->questions > before; }));

    letPass(std::chrono::seconds(30));

    EXPECT_TRUE(watched.areHanging());
}

TEST_F(UnfinishedRunsTest, LetsARunEndThatOutlivesThem)
{
    auto counted = std::make_unique<UnfinishedRuns>(files, clock);
    auto run = std::make_unique<UnfinishedRuns::Token>(*counted);
    counted.reset();

    run.reset();

    EXPECT_TRUE(runs.isEmpty());
}
