#include "Platform/Linux/Removal/FolderEmptying.h"

#include "Platform/Linux/Files/DirectoryBuffer.h"
#include "Platform/Linux/Files/DiskSteps.h"
#include "Platform/Linux/Files/HeldItem.h"
#include "Platform/Linux/Files/OpenAt.h"

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace Quillmere {

namespace {

/// True when the folder is ours and its owner has all rights now; another thread may have been the one to give them.
bool giveOwnerAllRights(const struct stat &status, const std::function<int(mode_t)> &change)
{
    const mode_t mode = status.st_mode & 07777;
    return status.st_uid == ::geteuid() && ((mode & S_IRWXU) == S_IRWXU || change(mode | S_IRWXU) == 0);
}

/// For a folder open for reading. An O_PATH descriptor, such as that of the folder an item stands in, is left alone.
bool unlock(int folder)
{
    struct stat status = {};
    return ::fstat(folder, &status) == 0
        && giveOwnerAllRights(status, [&](mode_t mode) { return ::fchmod(folder, mode); });
}

bool unlockPath(int folder)
{
    struct stat status = {};
    return ::fstat(folder, &status) == 0
        && giveOwnerAllRights(status, [&](mode_t mode) { return changeMode(folder, mode) ? 0 : -1; });
}

int unlinkUnlocking(int folder, const char *name, int flags)
{
    DiskSteps::take();
    if (::unlinkat(folder, name, flags) == 0)
        return 0;
    if (errno != EACCES)
        return errno;
    return !unlock(folder) ? EACCES : ::unlinkat(folder, name, flags) == 0 ? 0 : errno;
}

void sweepEntry(int folder, const dirent64 &entry, const MayRemove &mayRemove, FolderSweep &sweep)
{
    if (entry.d_type == DT_DIR) {
        sweep.folders.append(entry.d_name);
        return;
    }
    const int error = removeEntry(folder, entry.d_name, mayRemove);
    if (error == 0)
        ++sweep.removed;
    else if (error == EISDIR) // Of a kind unknown before, or changed since.
        sweep.folders.append(entry.d_name);
    else if (error != ENOENT)
        sweep.refusals.append({entry.d_name, error});
}

} // namespace

FolderSweep sweepFolder(int folder, const MayRemove &mayRemove)
{
    FolderSweep sweep;
    DirectoryBuffer buffer;
    while (buffer.read(folder)) {
        for (const dirent64 &entry : buffer) {
            if (!DirectoryBuffer::isDots(entry))
                sweepEntry(folder, entry, mayRemove, sweep);
        }
    }
    // A folder that somebody else has deleted meanwhile reads as ENOENT: nothing is left in it.
    if (errno != 0 && errno != ENOENT)
        sweep.refusals.append({{}, errno});
    return sweep;
}

FileDescriptor openFolderToEmpty(int parent, const QByteArray &name)
{
    constexpr int reading = O_RDONLY | O_DIRECTORY | O_NOFOLLOW;
    FileDescriptor folder = openAt(parent, name, reading, stayingInside);
    if (!folder.isOpen() && errno == EACCES) {
        unlock(parent);
        const FileDescriptor locked = openAt(parent, name, O_PATH | O_DIRECTORY | O_NOFOLLOW, stayingInside);
        if (locked.isOpen())
            return openFolderToEmpty(locked.number());
    }
    return folder;
}

FileDescriptor openFolderToEmpty(int folder)
{
    FileDescriptor opened = openAt(folder, ".", O_RDONLY | O_DIRECTORY, stayingInside);
    if (!opened.isOpen() && errno == EACCES) {
        if (unlockPath(folder))
            return openAt(folder, ".", O_RDONLY | O_DIRECTORY, stayingInside);
        errno = EACCES;
    }
    return opened;
}

int removeEntry(int folder, const char *name, const MayRemove &mayRemove)
{
    if (mayRemove) {
        struct stat status = {};
        if (::fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) != 0)
            return errno;
        if (!S_ISDIR(status.st_mode) && !mayRemove(status))
            return EBUSY;
    }
    return unlinkUnlocking(folder, name, 0);
}

int removeEmptyFolder(int parent, const QByteArray &name)
{
    return unlinkUnlocking(parent, name.constData(), AT_REMOVEDIR);
}

int removeEmptyFolderOrEntry(int parent, const QByteArray &name, const MayRemove &mayRemove)
{
    const int error = removeEmptyFolder(parent, name);
    return error == ENOTDIR ? removeEntry(parent, name.constData(), mayRemove) : error;
}

} // namespace Quillmere
