#pragma once

#include "Platform/Linux/Files/FileDescriptor.h"

#include <QByteArray>
#include <QList>

#include <functional>

#include <sys/stat.h>

namespace Quillmere {

/// Says of an entry that is no folder whether it may be deleted. Asked on any thread; none means yes to all.
using MayRemove = std::function<bool(const struct stat &status)>;

/// What one look through a folder did.
struct FolderSweep
{
    struct Refusal
    {
        QByteArray name; ///< Empty when the folder itself could not be read on.
        int error = 0;
    };

    QList<QByteArray> folders; ///< Found, left standing.
    QList<Refusal> refusals;
    qint64 removed = 0;
};

/// Deletes everything in @p folder, open for reading, but its sub-folders. A link goes itself.
/// A folder of ours that we may not write to is made writable. What vanishes meanwhile is no refusal.
[[nodiscard]] FolderSweep sweepFolder(int folder, const MayRemove &mayRemove);

/// Opens the folder @p name in @p parent for sweeping, making one of ours readable where it is not. Never leads through
/// a link (ELOOP, ENOTDIR) or into another mount (EXDEV); nothing open means failure, with the reason in errno.
[[nodiscard]] FileDescriptor openFolderToEmpty(int parent, const QByteArray &name);
/// The same for a folder held by an O_PATH descriptor.
[[nodiscard]] FileDescriptor openFolderToEmpty(int folder);

/// These answer 0 or an error number; EBUSY also when @p mayRemove says no.
[[nodiscard]] int removeEntry(int folder, const char *name, const MayRemove &mayRemove);
[[nodiscard]] int removeEmptyFolder(int parent, const QByteArray &name);
/// A link or a file that has taken the folder's place meanwhile goes itself.
[[nodiscard]] int removeEmptyFolderOrEntry(int parent, const QByteArray &name, const MayRemove &mayRemove);

} // namespace Quillmere
