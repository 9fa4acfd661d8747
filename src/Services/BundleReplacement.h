#pragma once

#include "Platform/FileManager.h"

namespace Quillmere {

/// Puts a copy of the bundle @p from at @p to, in place of what stands there. Wherever this is ended, there stands the
/// whole of what was there, the whole copy, or nothing.
[[nodiscard]] Result<void> replaceBundle(const FileManager &files, const FilePath &from, const FilePath &to);

} // namespace Quillmere
