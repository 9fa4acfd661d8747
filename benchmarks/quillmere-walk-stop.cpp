#include "Platform/Linux/Walk/TreeWalk.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <thread>

using namespace Quillmere;
using Clock = std::chrono::steady_clock;

namespace {

double milliseconds(Clock::duration duration)
{
    return std::chrono::duration<double, std::milli>(duration).count();
}

/// From the request to stop, made after @p delay, to the return of the walk; negative when the walk ended before.
double timeToStop(const FilePath &folder, Clock::duration delay)
{
    std::stop_source source;
    Clock::time_point requested;
    std::jthread stopper([&] {
        std::this_thread::sleep_for(delay);
        requested = Clock::now();
        source.request_stop();
    });
    const bool isStopped = !measureTree(folder, Cancellation(source.get_token())).isOk();
    const Clock::time_point returned = Clock::now();
    stopper.join();
    return isStopped && returned > requested ? milliseconds(returned - requested) : -1;
}

} // namespace

/// Prints, a line each, how many milliseconds a walk took to stop after it was told to at a moment within the first
/// MOST milliseconds. Rounds in which it was at its end before are left out.
int main(int argumentCount, char **arguments)
{
    if (argumentCount != 4) {
        std::fputs("Usage: quillmere-walk-stop PATH ROUNDS MOST\n", stderr);
        return 2;
    }
    std::mt19937 chance(std::random_device{}());
    std::uniform_int_distribution<int> microseconds(1, 1000 * std::atoi(arguments[3]));
    for (int round = std::atoi(arguments[2]); round > 0; --round) {
        const double time = timeToStop(FilePath(arguments[1]), std::chrono::microseconds(microseconds(chance)));
        if (time >= 0)
            std::printf("%.3f\n", time);
    }
    return 0;
}
