#pragma once

#include "Values/Result.h"

#include <optional>

#include <sys/types.h>

namespace Quillmere {

/// Puts a file with @p contents in the place of whatever file or link stands at @p path, whose folder must exist. It
/// has the rights @p mode; without, owner, rights and extended attributes of the file that was there as far as the user
/// may give them, or else what is usual of a new file. Whoever looks finds the old file or the new one, whole, after a
/// crash too; when it fails, the old one stays. The new file is nobody's until it is complete, so that a kill leaves
/// nothing behind where the file system can do that; what it leaves all the same, hidden beside the file, goes at the
/// next replacement.
[[nodiscard]] Result<void> replaceFile(const FilePath &path, const QByteArray &contents,
                                       std::optional<mode_t> mode = {});

} // namespace Quillmere
