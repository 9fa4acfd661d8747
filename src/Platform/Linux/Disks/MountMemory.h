#pragma once

#include "Platform/Linux/Disks/MountedVolumes.h"

#include <QHash>
#include <QSet>

namespace Quillmere {

/// Which volumes have been told of. A volume is known by its disk, as long as that stays in, and by its file system:
/// one that is formatted anew is another. One that is unmounted and mounted again is not: whoever is told of an NTFS
/// disk that can only be read unmounts it, and has it mounted as it was where no driver can write to it. Were that told
/// of, it would go on for ever, with a password dialog at each turn.
class MountMemory
{
public:
    explicit MountMemory(BlockDevices devices = BlockDevices());

    /// The volumes of @p table that are new since the last call, where they are mounted first of all.
    [[nodiscard]] QList<FilePath> takeNews(const QList<MountEntry> &table);

private:
    using Volume = std::pair<quint64, quint64>; ///< Its device and the kernel's number of its disk.
    using FileSystem = std::pair<QByteArray, QByteArray>; ///< Its type and its uuid.

    BlockDevices m_devices;
    QHash<Volume, FileSystem> m_mounted; ///< At the last call.
    QSet<std::pair<Volume, FileSystem>> m_known;
};

} // namespace Quillmere
