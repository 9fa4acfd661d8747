#include "Platform/Linux/EntryStatus.h"

#include <fcntl.h>

namespace Quillmere {

namespace {

// statx(2): stx_blocks counts units of 512 bytes, whatever the file system's own block size.
constexpr qint64 bytesPerBlock = 512;

} // namespace

std::optional<EntryStatus> EntryStatus::ask(int folder, const char *name, unsigned mask)
{
    constexpr int flags = AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT | AT_STATX_DONT_SYNC;
    EntryStatus entry;
    if (::statx(folder, name, flags, STATX_TYPE | STATX_BLOCKS | mask, &entry.m_status) != 0)
        return std::nullopt;
    return entry;
}

bool EntryStatus::isFileOfTree() const
{
    return S_ISREG(m_status.stx_mode) && (m_status.stx_attributes & STATX_ATTR_MOUNT_ROOT) == 0;
}

qint64 EntryStatus::allocatedSize() const
{
    return static_cast<qint64>(m_status.stx_blocks) * bytesPerBlock;
}

} // namespace Quillmere
