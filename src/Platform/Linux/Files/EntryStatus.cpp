#include "Platform/Linux/Files/EntryStatus.h"

#include <fcntl.h>

namespace Quillmere {

namespace {

constexpr int flags = AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT | AT_STATX_DONT_SYNC;

} // namespace

EntryStatus::EntryStatus(int folder, const char *name, unsigned mask)
    : m_isKnown(::statx(folder, name, flags, STATX_TYPE | STATX_BLOCKS | mask, &m_status) == 0)
{
}

} // namespace Quillmere
