#include "Platform/Linux/Removal/TrashByCopy.h"

#include "Platform/Linux/Files/ErrnoFailure.h"
#include "Platform/Linux/Files/OpenAt.h"
#include "Platform/Linux/Files/StatFields.h"
#include "Platform/Linux/Removal/StagingFolder.h"
#include "Platform/Linux/Removal/TrashMove.h"
#include "Platform/Linux/Removal/TreeCopy.h"
#include "Platform/Linux/Removal/TreeRemoval.h"
#include "Platform/Linux/Walk/TreeWalk.h"

#include <cerrno>
#include <tuple>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace Quillmere {

namespace {

constexpr char copyName[] = "item";

/// Looks beforehand whether the item could be deleted at all, so that nothing is copied in vain.
Result<void> mayLeave(const ItemPlace &place, const struct stat &item)
{
    const int folder = place.folder.number();
    struct stat parent = {};
    if (::faccessat(folder, ".", W_OK | X_OK, AT_EACCESS) != 0 || ::fstat(folder, &parent) != 0)
        return failureFromErrno(errno, place.path);
    const uid_t user = ::geteuid();
    if ((parent.st_mode & S_ISVTX) != 0 && user != 0 && user != parent.st_uid && user != item.st_uid)
        return failureFromErrno(EPERM, place.path);
    return {};
}

Result<void> hasRoom(const TrashFolder &trash, const ItemPlace &place, const struct stat &item)
{
    struct statvfs volume = {};
    if (::fstatvfs(trash.files.number(), &volume) != 0)
        return failureFromErrno(errno, trash.path);
    qint64 needed = item.st_blocks * bytesPerBlock;
    if (S_ISDIR(item.st_mode)) {
        const Result<TreeSize> size = measureTree(place.path, {});
        needed += size ? size.value().allocatedSize : 0;
    }
    if (static_cast<quint64>(needed) > quint64(volume.f_bavail) * volume.f_frsize)
        return failureFromErrno(ENOSPC, place.path);
    return {};
}

/// Two programs must not take the same folder apart at once. Nothing open for what is no folder.
Result<FileDescriptor> lockFolder(const ItemPlace &place, const FileDescriptor &item, const struct stat &status)
{
    if (!S_ISDIR(status.st_mode))
        return FileDescriptor();
    FileDescriptor folder = openAt(item.number(), ".", O_RDONLY | O_DIRECTORY);
    if (!folder.isOpen())
        return failureFromErrno(errno, place.path);
    if (::flock(folder.number(), LOCK_EX | LOCK_NB) != 0)
        return Failure{Failure::Kind::Busy, place.path, u"Another program has locked the folder"_qs};
    return folder;
}

/// Whether that very item was copied, and not what has taken its place. A folder is compared when it is deleted, entry
/// by entry.
bool isCopied(const FileDescriptor &item, const CopiedEntries &copied)
{
    struct stat status = {};
    return ::fstat(item.number(), &status) == 0 && (S_ISDIR(status.st_mode) || copied.contains(status));
}

} // namespace

Result<QByteArray> trashByCopy(const ItemPlace &place, const FileDescriptor &item, const TrashFolder &trash)
{
    struct stat status = {};
    if (::fstat(item.number(), &status) != 0)
        return failureFromErrno(errno, place.path);
    if (const Result<void> leaves = mayLeave(place, status); !leaves)
        return leaves.failure();
    if (const Result<void> room = hasRoom(trash, place, status); !room)
        return room.failure();
    const Result<FileDescriptor> lock = lockFolder(place, item, status);
    if (!lock)
        return lock.failure();

    const Result<StagingFolder> staging = StagingFolder::make(trash);
    if (!staging)
        return staging.failure();
    const Result<CopiedEntries> copied = copyTree(place, staging.value().descriptor(), copyName, place.path);
    if (!copied)
        return copied.failure();
    if (!isCopied(item, copied.value()))
        return Failure{Failure::Kind::Busy, place.path, u"Replaced or written to by somebody else meanwhile"_qs};
    Result<TrashReservation> filled = moveIntoTrash(staging.value().descriptor(), copyName, place.path, trash);
    if (!filled)
        return filled.failure();

    RemovalRecord record;
    if (::syncfs(staging.value().descriptor()) == 0)
        TreeRemoval().remove(place, item, record,
                             [&](const struct stat &entry) { return copied.value().contains(entry); });
    else
        record.addFailure(errno, place.path);
    const std::optional<Failure> failure = record.failure();
    if (!failure)
        return filled.value().name();
    if (record.removed() == 0)
        std::ignore = filled.value().empty(staging.value().descriptor(), copyName);
    return *failure;
}

} // namespace Quillmere
