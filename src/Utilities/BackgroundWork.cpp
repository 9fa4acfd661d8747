#include "Utilities/BackgroundWork.h"

#include <limits>

namespace Quillmere {

namespace {

// Scans and cleanups of different screens may be under way at once; each waits for the disk most of its time.
constexpr int mostRunsAtOnce = 8;

/// Never destroyed: what still waits in it, as for a disk or a dialog that nobody answers, does not keep the program
/// from ending.
QThreadPool *makeLastingPool(int mostThreads)
{
    auto *made = new QThreadPool;
    made->setMaxThreadCount(mostThreads);
    return made;
}

} // namespace

QThreadPool &backgroundPool()
{
    static QThreadPool *const pool = makeLastingPool(mostRunsAtOnce);
    return *pool;
}

QThreadPool &elevationPool()
{
    static QThreadPool *const pool = makeLastingPool(1);
    return *pool;
}

QThreadPool &childProcessPool()
{
    static QThreadPool *const pool = makeLastingPool(std::numeric_limits<int>::max());
    return *pool;
}

} // namespace Quillmere
