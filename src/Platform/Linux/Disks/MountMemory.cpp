#include "Platform/Linux/Disks/MountMemory.h"

#include <utility>

namespace Quillmere {

MountMemory::MountMemory(BlockDevices devices)
    : m_devices(std::move(devices))
{
}

QList<FilePath> MountMemory::takeNews(const QList<MountEntry> &table)
{
    QList<FilePath> news;
    QSet<Volume> mounted;
    for (const MountedVolume &volume : volumesIn(table, m_devices)) {
        const Volume identity(volume.number, volume.sequence);
        mounted.insert(identity);
        // Nothing is formatted while it is mounted; and the uuid of what was made just now may only be seen later.
        if (m_mounted.contains(identity))
            continue;
        const std::pair known(identity, FileSystem(volume.type, m_devices.fileSystemUuid(volume.number)));
        if (!m_known.contains(known))
            news.append(volume.place);
        m_known.insert(known);
    }
    m_mounted = mounted;
    return news;
}

} // namespace Quillmere
