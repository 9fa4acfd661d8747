#pragma once

#include <QByteArray>

#include <optional>

namespace Quillmere {

/// The whole of a file that the kernel makes up as it is read, which has no size of its own. @p name is relative to
/// the open folder @p folder, or absolute. Nothing when it cannot be read; the reason is in errno.
[[nodiscard]] std::optional<QByteArray> readProcFile(int folder, const char *name);

} // namespace Quillmere
