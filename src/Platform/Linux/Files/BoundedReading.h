#pragma once

#include "Platform/Linux/Files/FileDescriptor.h"
#include "Values/FilePath.h"
#include "Values/Result.h"

#include <QByteArray>

namespace Quillmere {

/// The whole of a file that somebody else may have put there. Links are followed. Never waits for a writer: what is
/// not a regular file, and what holds more than @p mostBytes, is Malformed.
[[nodiscard]] Result<QByteArray> readBounded(const FilePath &path, qsizetype mostBytes);

/// The same of a file that is open already, which @p path names in a failure. Open it with O_NONBLOCK.
[[nodiscard]] Result<QByteArray> readBounded(const FileDescriptor &file, const FilePath &path, qsizetype mostBytes);

} // namespace Quillmere
