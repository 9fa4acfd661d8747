#pragma once

#include "Tools/ToolEnd.h"
#include "Values/FilePath.h"
#include "Values/Result.h"

namespace Quillmere {

/// Where the kernel takes the wish to drop what it keeps of files in memory.
[[nodiscard]] FilePath dropCachesFile();

/// Writes everything to the disks and drops what the kernel keeps of files in memory. Fails with NoPermission for
/// anybody but root.
[[nodiscard]] Result<void> purgeCaches(const FilePath &dropCaches);

/// Carries out the command `purge`, which takes no arguments.
[[nodiscard]] ToolEnd runPurge(const QStringList &arguments, const FilePath &dropCaches);

} // namespace Quillmere
