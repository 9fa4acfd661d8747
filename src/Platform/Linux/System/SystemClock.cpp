#include "Platform/Linux/System/SystemClock.h"

namespace Quillmere {

QDateTime SystemClock::now() const
{
    return QDateTime::currentDateTimeUtc();
}

std::chrono::milliseconds SystemClock::elapsed() const
{
    // Here it is CLOCK_MONOTONIC, which clock_gettime(2) says "does not count time that the system is suspended".
    const auto sinceBoot = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(sinceBoot);
}

} // namespace Quillmere
