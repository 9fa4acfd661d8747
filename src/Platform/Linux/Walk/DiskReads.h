#pragma once

namespace Quillmere {

/// Counts what the calling thread had to fetch from a disk rather than found in memory.
class DiskReads
{
public:
    /// Sectors of 512 bytes since the last question; 0 at the first. Another thread's do not count.
    [[nodiscard]] long sectorsSinceLastAsked();

private:
    long m_before = -1;
};

} // namespace Quillmere
