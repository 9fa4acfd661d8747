#pragma once

#include "Platform/Linux/Files/ItemPlace.h"

#include <optional>

namespace Quillmere {

/// True when @p descriptor stands for the top of a mount, whatever is mounted, and wherever.
[[nodiscard]] bool isMountRoot(int descriptor);

/// Tells the mounts of the machine apart, two of one file system as well: nothing is renamed from one to the other.
/// Nothing when the descriptor cannot be asked.
[[nodiscard]] std::optional<quint64> mountOf(int descriptor);

/// One line of the kernel's table of mounts.
struct MountEntry
{
    FilePath location;
    QByteArray type; ///< As the kernel calls it: "ext4", "nfs4", "fuse.sshfs".
    QByteArray device; ///< "major:minor": one file system has one, however often and in whatever parts it is mounted.
    FilePath root = {}; ///< The folder of the file system that is seen there; "/" unless only a part of it is mounted.
    QByteArray source = {}; ///< What was mounted, as whoever mounted it called it: "/dev/sda1", "server:/share".
    QByteArray options = {}; ///< Those of the file system itself.
    bool isReadOnly = false; ///< There, or everywhere.

    bool operator==(const MountEntry &) const = default;
};

/// What stands for something that is mounted at the first touch.
[[nodiscard]] bool isTrigger(const MountEntry &mount);
/// A folder from which the machine starts, or one in it.
[[nodiscard]] bool isOfBootLoader(const FilePath &location);

/// A field of one of the kernel's tables as it is. proc(5): blanks, tabs, line ends and backslashes stand there as a
/// backslash and three octal digits.
[[nodiscard]] QByteArray withoutEscapes(const QByteArray &field);

/// The mounts in what /proc/self/mountinfo holds, in the order in which they were made.
[[nodiscard]] QList<MountEntry> parseMountTable(const QByteArray &text);
/// The table as it is now. Fails where there is no /proc, or no descriptor left to read it. Touches no mount.
[[nodiscard]] Result<QList<MountEntry>> mountTable();
/// The mount of @p table that @p path lies in, by its text alone.
[[nodiscard]] std::optional<MountEntry> mountThatHolds(const FilePath &path, const QList<MountEntry> &table);

/// True when something is mounted below @p folder, which is standardized and free of links, or may be: where the table
/// cannot be read.
[[nodiscard]] bool holdsMount(const FilePath &folder);

/// The top folder of the mount that holds an item.
struct VolumeTop
{
    FileDescriptor folder; ///< O_PATH.
    FilePath path;

    [[nodiscard]] static Result<VolumeTop> of(const ItemPlace &place);
};

} // namespace Quillmere
