#pragma once

#include "Platform/FileManager.h"

#include <sys/stat.h>

namespace Quillmere {

// stat(2) and statx(2): st_blocks counts units of 512 bytes, whatever the file system's own block size.
inline constexpr qint64 bytesPerBlock = 512;

/// What an entry of that mode is; of the mode only the kind is looked at.
[[nodiscard]] inline EntryKind kindOfMode(mode_t mode)
{
    if (S_ISREG(mode))
        return EntryKind::Regular;
    if (S_ISDIR(mode))
        return EntryKind::Directory;
    return S_ISLNK(mode) ? EntryKind::SymbolicLink : EntryKind::Other;
}

} // namespace Quillmere
