#pragma once

#include <QByteArray>

#include <sys/stat.h>

namespace Quillmere {

/// These copy one thing from @p source, a descriptor of it or of its folder. They answer 0 or an error number.

/// Contents of a regular file; holes stay holes.
[[nodiscard]] int copyContents(int source, int target, qint64 size);
/// Extended attributes, owner, rights and times, as far as the target's file system and our own rights allow it.
void copyMetadata(int source, int target, const struct stat &status);
/// Those that the target's file system takes and we may set.
void copyExtendedAttributes(int source, int target);
/// A link, FIFO, socket or device, which is made anew.
[[nodiscard]] int copySpecial(int fromFolder, const QByteArray &from, int toFolder, const QByteArray &to,
                              const struct stat &status);

} // namespace Quillmere
