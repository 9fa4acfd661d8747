#include "Platform/Linux/Disks/DiskObjects.h"

#include <algorithm>

namespace Quillmere {

const DiskBlock *DiskObjects::block(quint64 number) const
{
    const auto found = std::ranges::find(blocks, number, &DiskBlock::number);
    return found == blocks.end() ? nullptr : &*found;
}

const DiskDrive *DiskObjects::driveOf(const DiskBlock &block) const
{
    const auto found = drives.constFind(block.drive);
    return found == drives.constEnd() ? nullptr : &*found;
}

bool DiskObjects::isExternal(const DiskBlock &block) const
{
    if (const DiskDrive *drive = driveOf(block))
        return drive->isRemovable || drive->isEjectable || drive->bus == u"usb" || drive->bus == u"sdio";
    return !block.isOfSystem;
}

} // namespace Quillmere
