#include "ViewModels/LatestTask.h"

#include <gtest/gtest.h>

#include <optional>

using namespace Quillmere;

TEST(LatestTaskTest, KnowsTheTokenOfTheLatestAlone)
{
    LatestTask task;
    const std::stop_token first = task.begin();
    EXPECT_TRUE(task.isLatest(first));

    const std::stop_token second = task.begin();

    EXPECT_FALSE(task.isLatest(first));
    EXPECT_TRUE(task.isLatest(second));
    EXPECT_TRUE(task.isLatest(task.token()));
}

TEST(LatestTaskTest, StopsTheOneBeforeWhenAnotherBegins)
{
    LatestTask task;
    const std::stop_token first = task.begin();
    EXPECT_FALSE(first.stop_requested());

    const std::stop_token second = task.begin();

    EXPECT_TRUE(first.stop_requested());
    EXPECT_FALSE(second.stop_requested());
}

TEST(LatestTaskTest, StaysTheLatestWhenItIsStopped)
{
    LatestTask task;
    const std::stop_token only = task.begin();

    task.stop();

    EXPECT_TRUE(only.stop_requested());
    EXPECT_TRUE(task.isLatest(only));
}

TEST(LatestTaskTest, LetsGoOfTheLatestAlone)
{
    std::optional<LatestTask> task(std::in_place);
    const std::stop_token first = task->begin();
    const std::stop_token second = task->begin();

    task->letGo();
    task.reset();

    EXPECT_TRUE(first.stop_requested());
    EXPECT_FALSE(second.stop_requested());
}

TEST(LatestTaskTest, StopsWithItsOwner)
{
    std::optional<LatestTask> task(std::in_place);
    const std::stop_token only = task->begin();

    task.reset();

    EXPECT_TRUE(only.stop_requested());
}
