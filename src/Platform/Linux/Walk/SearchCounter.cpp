#include "Platform/Linux/Walk/SearchCounter.h"

namespace Quillmere {

SearchCounter::SearchCounter(const FileSearch &search)
    : m_search(search)
{
}

void SearchCounter::tell(qint64 number, const char *name)
{
    const std::scoped_lock lock(m_telling);
    // Another thread may have come with a later one meanwhile.
    if (number <= m_lastTold || !m_search.progress)
        return;
    m_lastTold = number;
    m_search.progress(number, name);
}

} // namespace Quillmere
