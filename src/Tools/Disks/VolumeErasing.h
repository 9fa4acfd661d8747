#pragma once

#include "Tools/Disks/DiskIdentity.h"
#include "Tools/Disks/DiskTools.h"
#include "Tools/ToolEnd.h"

namespace Quillmere {

/// Makes an empty file system on a volume. @p format as fileSystemFor() knows it. Says what was done, and when it
/// fails whether anything was.
[[nodiscard]] ToolEnd eraseVolume(const DiskTools &tools, const QString &format, const QString &label,
                                  const DiskIdentity &volume);

} // namespace Quillmere
