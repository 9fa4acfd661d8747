#include "ViewModels/BackgroundWork.h"

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

} // namespace Quillmere
