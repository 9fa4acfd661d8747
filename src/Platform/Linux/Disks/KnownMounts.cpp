#include "Platform/Linux/Disks/KnownMounts.h"

#include "Platform/Linux/Files/OpenAt.h"

#include <algorithm>
#include <array>
#include <mutex>
#include <string_view>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace Quillmere {

namespace {

// File systems of the kernel's own on disks of this machine, or in its memory.
constexpr std::array<std::string_view, 22> localTypes
    = {"bcachefs", "btrfs", "erofs",   "exfat", "ext2",     "ext3",     "ext4",  "f2fs", "hfsplus", "iso9660", "jfs",
       "nilfs2",   "ntfs3", "overlay", "ramfs", "reiserfs", "squashfs", "tmpfs", "udf",  "vfat",    "xfs",     "zfs"};

/// The table as it was last read, with the file that tells when it is no longer true.
struct KeptTable
{
    std::mutex mutex;
    FileDescriptor notices;
    pid_t process = 0; ///< Whose table it is: a process may have been started into mounts of its own.
    QList<MountEntry> entries;

    /// What is known stays where the table cannot be read, and the next call reads again.
    void read()
    {
        if (Result<QList<MountEntry>> table = mountTable())
            entries = std::move(table).value();
        else
            notices = FileDescriptor();
    }

    /// proc(5): whoever has the table open is told by poll(2) of each change.
    [[nodiscard]] bool hasChanged() const
    {
        pollfd wanted = {notices.number(), POLLPRI, 0};
        return ::poll(&wanted, 1, 0) != 0;
    }
};

} // namespace

QList<MountEntry> knownMounts()
{
    static KeptTable *const kept = new KeptTable;
    const std::scoped_lock lock(kept->mutex);
    if (!kept->notices.isOpen() || kept->process != ::getpid()) {
        kept->notices = openAt(AT_FDCWD, "/proc/self/mountinfo", O_RDONLY);
        kept->process = ::getpid();
        kept->read();
    } else if (kept->hasChanged()) {
        kept->read();
    }
    return kept->entries;
}

bool alwaysAnswers(const MountEntry &mount)
{
    return std::ranges::find(localTypes, std::string_view(mount.type.constData())) != localTypes.end();
}

} // namespace Quillmere
