#pragma once

#include "Platform/FileManager.h"
#include "Platform/Linux/Walk/WalkPool.h"

namespace Quillmere {

/// FileManager::measureTree() on this system. The calling thread walks, and @p pool helps it with what is large.
[[nodiscard]] Result<TreeSize> measureTree(const FilePath &folder, const Cancellation &cancellation,
                                           WalkPool &pool = WalkPool::shared());

/// FileManager::findFiles() on this system, in the same way. What a file occupies are its blocks.
[[nodiscard]] Result<QList<FoundFile>> findFiles(const FilePath &folder, const FileSearch &search,
                                                 const Cancellation &cancellation, WalkPool &pool = WalkPool::shared());

} // namespace Quillmere
