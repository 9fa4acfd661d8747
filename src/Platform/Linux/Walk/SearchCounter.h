#pragma once

#include "Platform/FileSearch.h"

#include <atomic>
#include <mutex>

namespace Quillmere {

/// Numbers the items that the threads of one search meet, and tells of every so many. Any thread.
class SearchCounter
{
public:
    explicit SearchCounter(const FileSearch &search);

    /// Reserves the next @p items numbers for the calling thread: they follow the one that is answered.
    [[nodiscard]] qint64 reserve(qint64 items) { return m_count.fetch_add(items, std::memory_order_relaxed); }
    [[nodiscard]] bool isToldOf(qint64 number) const { return number % m_search.itemsPerReport == 0; }
    void tell(qint64 number, const char *name);

private:
    const FileSearch &m_search;
    std::atomic<qint64> m_count = 0;
    std::mutex m_telling; ///< Around calls of the progress and the member below.
    qint64 m_lastTold = 0;
};

} // namespace Quillmere
