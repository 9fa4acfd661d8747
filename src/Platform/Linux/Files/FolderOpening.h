#pragma once

#include "Platform/Linux/Files/FileDescriptor.h"
#include "Values/FilePath.h"

namespace Quillmere {

/// What becomes of a symbolic link at the end of a path. Links above it are always followed.
enum class FinalLink { Follow, Refuse };

/// Opens a folder for reading its entries, however long the path. Nothing that is not a folder is opened, so no FIFO
/// and no device can block. When nothing is open afterwards, errno says why. When descriptors run out, the process is
/// first allowed as many as the system grants it.
[[nodiscard]] FileDescriptor openFolderForReading(const FilePath &folder, FinalLink link);

/// Opens the folder @p name that stands directly in @p parent, unless it is a link (ELOOP or ENOTDIR) or a mount
/// point (EXDEV): the open stays on the file system of @p parent and touches no other.
[[nodiscard]] FileDescriptor openSubfolder(int parent, const char *name);

/// Whether an open failed for want of a descriptor rather than for something that the folder is.
[[nodiscard]] bool lacksDescriptor(int error);

} // namespace Quillmere
