#pragma once

#include "Platform/FileManager.h"

namespace Quillmere {

/// @p item as removal takes it: below the true place of its folder, because removal refuses a location below a link,
/// and the home may be one. A link itself is not followed.
[[nodiscard]] inline FilePath removableLocation(const FileManager &files, const FilePath &item)
{
    return files.resolvingSymlinks(item.deletingLastPathComponent()).appending(item.lastPathComponent());
}

} // namespace Quillmere
