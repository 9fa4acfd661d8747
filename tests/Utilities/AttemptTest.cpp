#include "Utilities/Attempt.h"

#include <gtest/gtest.h>

#include <stdexcept>

using namespace Quillmere;

TEST(AttemptTest, AnswersWithWhatTheWorkGives)
{
    EXPECT_EQ(attempted([] { return 7; }).valueOr(0), 7);
}

TEST(AttemptTest, FailsAsCancelledWhereTheWorkWasStopped)
{
    const Result<int> answer = attempted([]() -> int { throw CancellationError(); });

    ASSERT_FALSE(answer);
    EXPECT_EQ(answer.failure().kind, Failure::Kind::Cancelled);
}

TEST(AttemptTest, FailsWithTheWordsOfWhateverElseWasThrown)
{
    const Result<int> answer = attempted([]() -> int { throw std::runtime_error("the disk is on fire"); });

    ASSERT_FALSE(answer);
    EXPECT_EQ(answer.failure().kind, Failure::Kind::Other);
    EXPECT_EQ(answer.failure().detail, u"the disk is on fire"_qs);
}
