#pragma once

#include "Platform/Linux/Files/FileDescriptor.h"
#include "Tools/Caller.h"
#include "Values/Result.h"

namespace Quillmere {

/// Copies the folder @p source, open for reading at @p location, to @p name in @p folder, which must be free, for
/// everybody to use and for nobody but the owner of this process to change: the copies are that owner's, run with
/// nobody else's rights, may be read and run by all where the source may be by its owner, and written by the owner
/// alone. Links stay links and must lead to places inside; so do times and the extended attributes that users give.
/// Everything is read with the rights of @p caller, no link is followed, and no other file system is entered.
/// Fails at the first thing that is not to be copied or that changes meanwhile (Busy); what was copied until then is
/// left to the caller.
[[nodiscard]] Result<void> copyBundle(int source, const FilePath &location, const Caller &caller, int folder,
                                      const QByteArray &name);

} // namespace Quillmere
