#pragma once

#include "Platform/FileManager.h"
#include "Platform/Linux/Disks/BlockDevices.h"
#include "Platform/Linux/Disks/DiskService.h"
#include "Platform/Linux/Disks/SystemDisks.h"

#include <functional>

namespace Quillmere {

/// A volume of a disk, and where it is mounted first of all.
struct MountedVolume
{
    FilePath place;
    quint64 number = 0; ///< dev_t.
    quint64 sequence = 0; ///< The kernel's number of its disk, which no other disk has as long as the machine runs.
    bool isReadOnly = false;
    QByteArray type = {}; ///< Of the file system, as the kernel calls it.

    bool operator==(const MountedVolume &) const = default;
};

/// The volumes of disks in @p table, each once, in the order in which they were mounted. Left out are file systems in
/// memory and of other machines, packed ones that programs come in, and those that only start the machine.
[[nodiscard]] QList<MountedVolume> volumesIn(const QList<MountEntry> &table, const BlockDevices &devices);

/// What the user knows as volumes. Safe to call from any thread.
class MountedVolumes
{
public:
    /// Answers with the state of this machine.
    using Places = std::function<Result<SystemPlaces>()>;

    /// Those of this machine, for the user we run as.
    MountedVolumes();
    MountedVolumes(Places places, BlockDevices devices);

    /// Without those that udisks2 wants to be shown to nobody.
    [[nodiscard]] QList<FilePath> places(const DiskService &service) const;
    /// Where udisks2 does not answer, the kernel's word is taken on whether it is plugged in, and it has no name.
    [[nodiscard]] Result<VolumeValues> values(const FilePath &place, const DiskService &service) const;

private:
    [[nodiscard]] bool isOfSystem(quint64 number, const SystemPlaces &places) const;

    Places m_places;
    BlockDevices m_devices;
};

} // namespace Quillmere
