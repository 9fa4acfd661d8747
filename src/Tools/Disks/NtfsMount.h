#pragma once

#include "Tools/Disks/DiskIdentity.h"
#include "Tools/Disks/DiskTools.h"
#include "Tools/ToolEnd.h"

namespace Quillmere {

/// The programs of ntfs-3g, and the folders that hold the places where volumes are mounted.
struct NtfsPrograms
{
    FilePath driver = FilePath("/usr/bin/ntfs-3g");
    FilePath probe = FilePath("/usr/bin/ntfs-3g.probe");
    QList<FilePath> mountFolders = {FilePath("/media"), FilePath("/run/media")};
};

/// Mounts an NTFS volume for writing at @p place, which must be in a folder that only root changes, below one of those
/// for volumes, empty or missing. A volume that was not shut down cleanly is explained and left alone.
[[nodiscard]] ToolEnd mountNtfs(const DiskTools &tools, const NtfsPrograms &programs, const FilePath &place,
                                const DiskIdentity &volume);

} // namespace Quillmere
