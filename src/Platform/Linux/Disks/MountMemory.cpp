#include "Platform/Linux/Disks/MountMemory.h"

#include <utility>

namespace Quillmere {

namespace {

/// Of a volume that was mounted at two looks. It may have been formatted in between, and the uuid of what was made just
/// now may only be seen later.
bool mayBeTheSame(const QByteArray &uuidBefore, const QByteArray &uuidNow)
{
    return uuidBefore.isEmpty() || uuidNow.isEmpty() || uuidBefore == uuidNow;
}

} // namespace

MountMemory::MountMemory(BlockDevices devices)
    : m_devices(std::move(devices))
{
}

QList<FilePath> MountMemory::takeNews(const QList<MountEntry> &table)
{
    QList<FilePath> news;
    QHash<Volume, FileSystem> mounted;
    for (const MountedVolume &volume : volumesIn(table, m_devices)) {
        const Volume identity(volume.number, volume.sequence);
        const FileSystem fileSystem(volume.type, m_devices.fileSystemUuid(volume.number));
        const auto before = m_mounted.constFind(identity);
        const bool isStill = before != m_mounted.cend() && mayBeTheSame(before.value().second, fileSystem.second);
        mounted.insert(identity, isStill && fileSystem.second.isEmpty() ? before.value() : fileSystem);
        if (!isStill && !m_known.contains({identity, fileSystem}))
            news.append(volume.place);
        m_known.insert({identity, fileSystem});
    }
    m_mounted = mounted;
    return news;
}

} // namespace Quillmere
