#pragma once

#include "Values/FilePath.h"
#include "Values/Result.h"

namespace Quillmere {

/// FileManager::copyItem() on this system: the copy grows under a name of its own beside @p destination and is moved
/// there once it is whole and on disk. What a copy or a removal that was killed has left beside it goes with
/// the next one.
[[nodiscard]] Result<void> copyItem(const FilePath &source, const FilePath &destination);

} // namespace Quillmere
