#pragma once

#include "Platform/Linux/Removal/RemovalGuard.h"

namespace Quillmere {

/// FileManager::removeItem() on this system. @p guard has the last word.
[[nodiscard]] Result<void> removeItem(const FilePath &path, const RemovalGuard &guard);
/// FileManager::removeItemAtOnce() on this system: the item goes from a hidden place beside its own.
[[nodiscard]] Result<void> removeItemAtOnce(const FilePath &path, const RemovalGuard &guard);

} // namespace Quillmere
