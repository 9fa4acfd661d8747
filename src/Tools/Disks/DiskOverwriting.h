#pragma once

#include "Tools/Disks/DiskIdentity.h"
#include "Tools/Disks/DiskTools.h"
#include "Tools/ToolEnd.h"

namespace Quillmere {

/// Writes zeros over the whole of a disk, partitions and all, once, and reads places all over it back. Says how far it
/// has come, and in the end what was done.
[[nodiscard]] ToolEnd overwriteDisk(const DiskTools &tools, const DiskIdentity &disk);

} // namespace Quillmere
