#pragma once

#include "Platform/Linux/Disks/BlockDevices.h"
#include "Platform/Linux/Disks/Mount.h"
#include "Values/Result.h"

#include <QSet>

namespace Quillmere {

/// What the running system says of where it lives.
struct SystemPlaces
{
    QList<MountEntry> mounts;
    QByteArray swaps; ///< What /proc/swaps holds.
    FilePath program; ///< The running program.
    QList<FilePath> homes = {}; ///< The home of whoever is working here: as it is called, and where that leads to.

    /// @p home of the user database. Empty where there is none.
    [[nodiscard]] static Result<SystemPlaces> ofThisMachine(const FilePath &home);
};

/// The numbers of all devices that the running system needs: those that carry "/", "/boot", the homes and the like,
/// swap or the running program, and everything these stand on, through partitions, encryption, volume groups, arrays
/// and images in files. Fails where that cannot be told of one of them, and then no disk may be taken for free. Below
/// the system's folders, and below what mounts at the first touch, much is mounted that is on no disk: there what is on
/// one counts too, and of the rest nothing is asked.
[[nodiscard]] Result<QSet<quint64>> systemDevices(const SystemPlaces &places, const BlockDevices &devices);

} // namespace Quillmere
