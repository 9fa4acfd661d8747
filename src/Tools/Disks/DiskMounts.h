#pragma once

#include "Platform/Linux/Disks/BlockDevices.h"
#include "Platform/Linux/Disks/DiskService.h"

#include <QStringList>

namespace Quillmere {

/// What of a disk is mounted at one moment, so that it can be mounted again when it was let go of for nothing.
class DiskMounts
{
public:
    /// Of the disk or volume @p number, and of all that stands on it.
    [[nodiscard]] static DiskMounts of(quint64 number, const DiskService &service, const BlockDevices &devices);

    /// Mounts with our own rights what is mounted no longer, and is still what it was. A sentence for each.
    [[nodiscard]] QStringList restore(const DiskService &service) const;

private:
    QList<DiskBlock> m_mounted;
};

} // namespace Quillmere
