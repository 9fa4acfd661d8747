#pragma once

#include "Platform/FileManager.h"

namespace Quillmere {

/// Which locations must never be removed. Whole paths are compared, not prefixes: a protected folder is refused,
/// what lies in it is not, since caches live in the Library. Links are not resolved; whoever holds a link asks a
/// second time about its target. A home that is a link is known by both its names. Any thread.
class PathValidator
{
public:
    /// One of the system's protected folders, or the home itself.
    [[nodiscard]] static bool isProtectedPath(const FilePath &path, const FileManager &files);
    /// One of the user's own folders, such as Documents.
    [[nodiscard]] static bool isProtectedUserDirectory(const FilePath &path, const FileManager &files);
};

} // namespace Quillmere
