#pragma once

#include "Platform/FileManager.h"

#include <dirent.h>

namespace Quillmere {

/// FileManager::contentsOfDirectory() on this system. What cannot be asked for its kind is EntryKind::Other.
[[nodiscard]] Result<QList<DirectoryEntry>> contentsOfDirectory(const FilePath &folder, HiddenFiles hidden);

/// What @p entry of @p folder is. Nothing for one that has vanished. Only where the file system does not tell is it
/// asked.
[[nodiscard]] std::optional<EntryKind> kindOf(const dirent64 &entry, int folder);

} // namespace Quillmere
