#include "Platform/Linux/FolderReader.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace Quillmere {

namespace {

// statx(2): stx_blocks counts units of 512 bytes, whatever the file system's own block size.
constexpr qint64 bytesPerBlock = 512;

} // namespace

FolderReader::FolderReader(const Cancellation &cancellation)
    : m_cancellation(cancellation)
{
}

bool FolderReader::takeIn(const DirectoryBuffer &entries, int folder, NameList &subfolders)
{
    bool isLast = false;
    for (const dirent64 &entry : entries) {
        if (m_cancellation.isRequested())
            return true;
        isLast = DirectoryBuffer::isLast(entry);
        if (DirectoryBuffer::isDots(entry))
            continue;
        if (entry.d_type == DT_DIR)
            subfolders.append(entry.d_name);
        else if (entry.d_type == DT_REG || entry.d_type == DT_UNKNOWN)
            ask(entry.d_name, folder, subfolders);
    }
    return isLast;
}

void FolderReader::ask(const char *name, int folder, NameList &subfolders)
{
    struct statx status = {};
    constexpr int flags = AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT | AT_STATX_DONT_SYNC;
    if (::statx(folder, name, flags, STATX_TYPE | STATX_BLOCKS, &status) != 0)
        return;
    if (S_ISDIR(status.stx_mode)) {
        subfolders.append(name);
        return;
    }
    // A file can be mounted on a file, and what is mounted is not part of the tree.
    const bool isMounted = (status.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0;
    if (!S_ISREG(status.stx_mode) || isMounted)
        return;
    m_sum.allocatedSize += static_cast<qint64>(status.stx_blocks) * bytesPerBlock;
    ++m_sum.fileCount;
}

} // namespace Quillmere
