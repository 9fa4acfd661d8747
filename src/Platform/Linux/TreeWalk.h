#pragma once

#include "Platform/FileManager.h"
#include "Platform/Linux/WalkPool.h"

namespace Quillmere {

/// FileManager::measureTree() on this system. The calling thread walks, and @p pool helps it with what is large.
[[nodiscard]] Result<TreeSize> measureTree(const FilePath &folder, const Cancellation &cancellation,
                                           WalkPool &pool = WalkPool::shared());

} // namespace Quillmere
