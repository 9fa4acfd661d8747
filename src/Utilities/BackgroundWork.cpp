#include "Utilities/BackgroundWork.h"

namespace Quillmere {

namespace {

// Scans and cleanups of different screens may be under way at once; each waits for the disk most of its time.
constexpr int mostRunsAtOnce = 8;

} // namespace

QThreadPool &backgroundPool()
{
    static QThreadPool pool;
    pool.setMaxThreadCount(mostRunsAtOnce);
    return pool;
}

QThreadPool &elevationPool()
{
    // Never destroyed: a dialog that nobody answers does not keep the program from ending.
    static QThreadPool *const pool = [] {
        auto *made = new QThreadPool;
        made->setMaxThreadCount(1);
        return made;
    }();
    return *pool;
}

} // namespace Quillmere
