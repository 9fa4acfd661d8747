#pragma once

#include "Platform/Linux/Disks/Mount.h"
#include "Platform/Linux/Programs/UserEnvironment.h"

namespace Quillmere {

/// A trash held open: the home's, or one of a volume. Descriptors are O_PATH.
struct TrashFolder
{
    FilePath path;
    FileDescriptor folder;
    FileDescriptor files;
    FileDescriptor info;
    FilePath top; ///< Of the volume; empty for the home trash.
    qsizetype longestName = 255; ///< Bytes.

    /// Made where it does not exist yet, the folders that lead to it included; those may be links.
    [[nodiscard]] static Result<TrashFolder> ofHome(const UserEnvironment &environment);
    /// `.Trash/$uid` where the administrator has set up a sticky `.Trash`, else `.Trash-$uid`, made where it does not
    /// exist yet. Neither a link nor anybody else's folder is taken, nor one that others may write to.
    [[nodiscard]] static Result<TrashFolder> ofVolume(const VolumeTop &top, uid_t user);

    /// What an info file says of the item at @p path.
    [[nodiscard]] QByteArray recordedPath(const FilePath &path) const;
};

} // namespace Quillmere
