#pragma once

#include "Platform/FileManager.h"

namespace Quillmere {

/// FileManager::contentsOfFile() and FileManager::writeFile() on this system.
[[nodiscard]] Result<QByteArray> readFile(const FilePath &path);
[[nodiscard]] Result<void> writeInPlace(const FilePath &path, const QByteArray &contents);
/// A link is replaced by the file. Owner, rights and extended attributes of a file that was there stay, as far as the
/// user may give them.
[[nodiscard]] Result<void> writeAtomically(const FilePath &path, const QByteArray &contents);

} // namespace Quillmere
