#pragma once

#include "Values/FilePath.h"

namespace Quillmere {

/// The last component of @p path without its extension and the point before that.
[[nodiscard]] inline QByteArray nameWithoutExtension(const FilePath &path)
{
    const QByteArray name = path.lastPathComponent();
    const QByteArray extension = path.pathExtension();
    return extension.isEmpty() ? name : name.chopped(extension.size() + 1);
}

/// Whether @p name stays within any folder that it is appended to. What a file says of itself may be anything.
[[nodiscard]] inline bool isPlainFileName(const QByteArray &name)
{
    return !name.isEmpty() && name != "." && name != ".." && !name.contains('/') && !name.contains('\0');
}

} // namespace Quillmere
