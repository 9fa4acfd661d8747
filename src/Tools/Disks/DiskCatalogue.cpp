#include "Tools/Disks/DiskCatalogue.h"

#include <utility>

namespace Quillmere {

namespace {

// linux/genhd.h: DISK_MAX_PARTS.
constexpr quint64 partitionsOfADisk = 256;
constexpr quint64 firstStackedVolume = 1000;

quint64 volumeNumber(const BlockDevice &device, const BlockDevice &disk)
{
    if (device.number == disk.number)
        return 0;
    const auto partition = static_cast<quint64>(device.partition);
    if (device.disk == disk.number)
        return partition;
    return firstStackedVolume + device.sequence * partitionsOfADisk + partition;
}

QString printable(const QString &text)
{
    QString plain;
    for (const QChar character : text)
        plain.append(character.isPrint() ? character : QChar(u'?'));
    return plain.left(256);
}

} // namespace

DiskCatalogue::DiskCatalogue(BlockDevices devices, DiskObjects objects, quint64 numbersBegin)
    : m_devices(std::move(devices))
    , m_objects(std::move(objects))
    , m_numbersBegin(numbersBegin)
{
}

std::optional<DiskIdentity> DiskCatalogue::volume(quint64 number) const
{
    const std::optional<BlockDevice> device = m_devices.device(number);
    const std::optional<BlockDevice> disk = m_devices.wholeDisk(number);
    if (!device || !disk || device->sequence == 0 || disk->sequence == 0)
        return std::nullopt;
    return identityOf(*device, {disk->sequence + m_numbersBegin, volumeNumber(*device, *disk)});
}

std::optional<DiskIdentity> DiskCatalogue::wholeDisk(quint64 number) const
{
    const std::optional<BlockDevice> disk = m_devices.wholeDisk(number);
    if (!disk || disk->sequence == 0)
        return std::nullopt;
    DiskIdentity identity = identityOf(*disk, {disk->sequence + m_numbersBegin, std::nullopt});
    // What is found at its beginning is of no account for a disk as a whole.
    identity.uuid.clear();
    return identity;
}

std::optional<DiskIdentity> DiskCatalogue::named(const DiskName &name) const
{
    for (const DiskBlock &block : m_objects.blocks) {
        const std::optional<DiskIdentity> identity = name.volume ? volume(block.number) : wholeDisk(block.number);
        if (identity && identity->name == name)
            return identity;
    }
    return std::nullopt;
}

DiskIdentity DiskCatalogue::identityOf(const BlockDevice &device, const DiskName &name) const
{
    DiskIdentity identity{name, device.name, device.number, device.size, device.start, device.sequence, {}, {}};
    const DiskBlock *block = m_objects.block(device.number);
    const std::optional<BlockDevice> disk = m_devices.wholeDisk(device.number);
    const DiskBlock *diskBlock = disk ? m_objects.block(disk->number) : nullptr;
    if (block)
        identity.uuid = printable(block->uuid);
    if (const DiskDrive *drive = diskBlock ? m_objects.driveOf(*diskBlock) : nullptr)
        identity.serial = printable(drive->serial);
    return identity;
}

} // namespace Quillmere
