#pragma once

#include "Platform/FileManager.h"

namespace Quillmere {

/// FileManager::contentsOfDirectory() on this system. What cannot be asked for its kind is EntryKind::Other.
[[nodiscard]] Result<QList<DirectoryEntry>> contentsOfDirectory(const FilePath &folder, HiddenFiles hidden);

} // namespace Quillmere
