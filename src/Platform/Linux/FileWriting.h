#pragma once

#include "Platform/FileManager.h"

namespace Quillmere {

/// FileManager::contentsOfFile() and FileManager::writeFile() on this system.
[[nodiscard]] Result<QByteArray> readFile(const FilePath &path);
[[nodiscard]] Result<void> writeInPlace(const FilePath &path, const QByteArray &contents);
/// A link is replaced by the file. The rights of a file that was there stay.
[[nodiscard]] Result<void> writeAtomically(const FilePath &path, const QByteArray &contents);

} // namespace Quillmere
