#pragma once

#include "Platform/Linux/Files/ItemPlace.h"
#include "Platform/Linux/Removal/CopiedEntries.h"

namespace Quillmere {

/// Copies @p place, with all that is in it, to @p name in @p folder, which must be free: contents with their holes,
/// links as links, rights, times and extended attributes. A file with several names becomes as many files.
/// Fails at the first thing that cannot be copied whole, that is mounted in the tree (NotSupported), or that changes
/// meanwhile (Busy); what was copied until then is left to the caller. What cannot be made is named as of a copy at
/// @p target.
[[nodiscard]] Result<CopiedEntries> copyTree(const ItemPlace &place, int folder, const QByteArray &name,
                                             const FilePath &target);

} // namespace Quillmere
