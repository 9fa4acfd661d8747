#pragma once

#include "Platform/Linux/Files/StatFields.h"

#include <sys/stat.h>

namespace Quillmere {

/// What the walks ask of one entry of a folder: the entry itself, and only what the kernel has at hand.
class EntryStatus
{
public:
    /// @p mask are the fields of statx(2) wanted beside kind and blocks.
    EntryStatus(int folder, const char *name, unsigned mask = 0);

    [[nodiscard]] bool isFolder() const { return m_isKnown && S_ISDIR(m_status.stx_mode); }
    /// A file can be mounted on a file, and what is mounted is not part of the tree.
    [[nodiscard]] bool isFileOfTree() const
    {
        return m_isKnown && S_ISREG(m_status.stx_mode) && (m_status.stx_attributes & STATX_ATTR_MOUNT_ROOT) == 0;
    }
    // The rest only of a file of the tree.
    [[nodiscard]] qint64 allocatedSize() const { return static_cast<qint64>(m_status.stx_blocks) * bytesPerBlock; }
    [[nodiscard]] const struct statx &fields() const { return m_status; }

private:
    struct statx m_status; ///< Filled in by the kernel alone: clearing it before would cost as much as all else here.
    const bool m_isKnown; ///< False when the entry has vanished or cannot be asked.
};

} // namespace Quillmere
