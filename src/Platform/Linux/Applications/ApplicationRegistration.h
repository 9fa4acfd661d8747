#pragma once

#include "Values/FilePath.h"
#include "Values/Result.h"

namespace Quillmere {

/// Workspace::registerApplication() on this system: writes an entry of the bundle's program into @p entries, a folder
/// of desktop entries, and the bundle's picture into the icon theme beside it. Both bear the bundle's identifier. Fails
/// for a bundle that does not say who it is and what it starts.
[[nodiscard]] Result<void> registerApplication(const FilePath &location, const FilePath &entries);

/// Workspace::unregisterApplication() on this system: removes that entry and that picture, unless the entry starts a
/// program outside of the bundle.
void unregisterApplication(const FilePath &location, const FilePath &entries);

} // namespace Quillmere
