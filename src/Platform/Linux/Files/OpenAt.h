#pragma once

#include "Platform/Linux/Files/FileDescriptor.h"

#include <QByteArray>

#include <linux/openat2.h>

namespace Quillmere {

/// Follows no link and enters no other file system.
inline constexpr quint64 stayingInside = RESOLVE_NO_SYMLINKS | RESOLVE_NO_XDEV;

/// Opens @p name relative to @p folder as openat2(2) does, O_CLOEXEC added; @p resolve holds RESOLVE_ flags.
/// Nothing open means failure, with the reason in errno.
[[nodiscard]] FileDescriptor openAt(int folder, const QByteArray &name, int flags, quint64 resolve = 0);

} // namespace Quillmere
