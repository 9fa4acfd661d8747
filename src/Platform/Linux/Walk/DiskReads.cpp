#include "Platform/Linux/Walk/DiskReads.h"

#include <sys/resource.h>

#include <utility>

namespace Quillmere {

long DiskReads::sectorsSinceLastAsked()
{
    rusage usage = {};
    if (::getrusage(RUSAGE_THREAD, &usage) != 0)
        return 0;
    const long before = std::exchange(m_before, usage.ru_inblock);
    return before < 0 ? 0 : usage.ru_inblock - before;
}

} // namespace Quillmere
