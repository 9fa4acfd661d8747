#pragma once

#include <QByteArray>

#include <sys/stat.h>

namespace Quillmere {

/// Whether what was @p before is still @p after, as far as its length and its time tell.
[[nodiscard]] bool isUnchanged(const struct stat &before, const struct stat &after);

/// What a copy of contents came to.
struct CopyError
{
    int number = 0; ///< Of the system; 0 where all went well.
    bool isOfTarget = false; ///< What was written failed, and not what was read.

    explicit operator bool() const { return number != 0; }
};

/// Contents of a regular file; holes stay holes.
[[nodiscard]] CopyError copyContents(int source, int target, qint64 size);

/// These make one thing anew, and answer with 0 or an error number.

/// A link that says @p text, with the times of @p status.
[[nodiscard]] int makeLink(const QByteArray &text, int folder, const QByteArray &name, const struct stat &status);
/// A link, FIFO, socket or device, which is made anew.
[[nodiscard]] int copySpecial(int fromFolder, const QByteArray &from, int toFolder, const QByteArray &to,
                              const struct stat &status);

} // namespace Quillmere
