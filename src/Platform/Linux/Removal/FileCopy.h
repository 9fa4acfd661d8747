#pragma once

#include <QByteArray>

#include <sys/stat.h>

namespace Quillmere {

/// Whether what was @p before is still @p after, as far as its length and its time tell.
[[nodiscard]] bool isUnchanged(const struct stat &before, const struct stat &after);

/// These copy one thing from @p source, a descriptor of it or of its folder. Those that answer do so with 0 or an error
/// number.

/// Contents of a regular file; holes stay holes.
[[nodiscard]] int copyContents(int source, int target, qint64 size);
/// A link that says @p text, with the times of @p status.
[[nodiscard]] int makeLink(const QByteArray &text, int folder, const QByteArray &name, const struct stat &status);
/// A link, FIFO, socket or device, which is made anew.
[[nodiscard]] int copySpecial(int fromFolder, const QByteArray &from, int toFolder, const QByteArray &to,
                              const struct stat &status);

} // namespace Quillmere
