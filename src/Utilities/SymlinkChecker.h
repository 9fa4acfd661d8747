#pragma once

#include "Platform/FileManager.h"

namespace Quillmere {

/// Tells links from what they point to. Any thread.
class SymlinkChecker
{
public:
    /// True for a link, a dangling one too. False for what is missing or cannot be read.
    [[nodiscard]] static bool isSymlink(const FilePath &path, const FileManager &files);
};

} // namespace Quillmere
