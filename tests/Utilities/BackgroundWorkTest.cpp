#include "Utilities/BackgroundWork.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <future>

#include <unistd.h>

using namespace Quillmere;

namespace {

/// Ends the program while something in @p pool waits for what never comes.
[[noreturn]] void endWithWorkWaitingIn(QThreadPool &pool)
{
    ::alarm(60); // A program that waits as well must not keep the tests.
    std::promise<void> started;
    pool.start([&started] {
        started.set_value();
        ::pause();
    });
    started.get_future().wait();
    std::exit(0);
}

} // namespace

TEST(BackgroundWorkTest, DoesNotKeepTheProgramFromEnding)
{
    EXPECT_EXIT(endWithWorkWaitingIn(backgroundPool()), testing::ExitedWithCode(0), "");
    EXPECT_EXIT(endWithWorkWaitingIn(elevationPool()), testing::ExitedWithCode(0), "");
    EXPECT_EXIT(endWithWorkWaitingIn(childProcessPool()), testing::ExitedWithCode(0), "");
}
