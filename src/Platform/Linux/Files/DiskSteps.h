#pragma once

#include <QtGlobal>

#include <atomic>

namespace Quillmere {

/// Counts for the whole program what is done on its disks: items removed or moved to the trash, pieces copied, folders
/// read. Any thread.
class DiskSteps
{
public:
    static void take() { s_taken.fetch_add(1, std::memory_order_relaxed); }
    [[nodiscard]] static quint64 taken() { return s_taken.load(std::memory_order_relaxed); }

private:
    static inline std::atomic<quint64> s_taken = 0;
};

} // namespace Quillmere
