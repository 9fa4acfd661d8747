#pragma once

#include "Platform/Linux/Files/FileDescriptor.h"
#include "Values/FilePath.h"
#include "Values/Result.h"

#include <QByteArray>

namespace Quillmere {

// None of these waits for a writer, and links are followed.

/// FileManager::contentsOfFile() on this system. What is not a regular file is NotSupported.
[[nodiscard]] Result<QByteArray> readFile(const FilePath &path);

/// The whole of a file that somebody else may have put there: what is not a regular file, and what holds more than
/// @p mostBytes, is Malformed.
[[nodiscard]] Result<QByteArray> readBounded(const FilePath &path, qsizetype mostBytes);

/// The same of a file that is open already, which @p path names in a failure. Open it with O_NONBLOCK.
[[nodiscard]] Result<QByteArray> readBounded(const FileDescriptor &file, const FilePath &path, qsizetype mostBytes);

} // namespace Quillmere
