#pragma once

#include "Platform/Linux/Disks/BlockDevices.h"
#include "Platform/Linux/Disks/DiskObjects.h"
#include "Tools/Disks/DiskIdentity.h"

namespace Quillmere {

/// Which disks there are at this moment, and what they are called.
class DiskCatalogue
{
public:
    /// @p numbersBegin is added to the kernel's number of a disk to make the one in its name.
    DiskCatalogue(BlockDevices devices, DiskObjects objects, quint64 numbersBegin);

    [[nodiscard]] const DiskObjects &objects() const { return m_objects; }
    /// The volume @p number. Nothing when there is none, or the kernel does not number its disk.
    [[nodiscard]] std::optional<DiskIdentity> volume(quint64 number) const;
    /// The whole disk that carries @p number.
    [[nodiscard]] std::optional<DiskIdentity> wholeDisk(quint64 number) const;
    /// What is called @p name now.
    [[nodiscard]] std::optional<DiskIdentity> named(const DiskName &name) const;

private:
    [[nodiscard]] DiskIdentity identityOf(const BlockDevice &device, const DiskName &name) const;

    BlockDevices m_devices;
    DiskObjects m_objects;
    quint64 m_numbersBegin;
};

} // namespace Quillmere
