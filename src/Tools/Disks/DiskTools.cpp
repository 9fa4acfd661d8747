#include "Tools/Disks/DiskTools.h"

#include "Platform/Linux/SystemDisks.h"
#include "Tools/Disks/LinuxDeviceAccess.h"
#include "Tools/Disks/VolumeOwner.h"

#include <cstdio>

namespace Quillmere {

namespace {

Result<QSet<quint64>> systemDevicesOfThisMachine()
{
    const Result<SystemPlaces> places = SystemPlaces::ofThisMachine();
    return places ? systemDevices(places.value(), BlockDevices()) : places.failure();
}

void sayOnStandardOutput(const QString &line)
{
    std::puts(line.toUtf8().constData());
    std::fflush(stdout);
}

} // namespace

DiskTools DiskTools::ofThisMachine()
{
    DiskTools tools{
        DiskService(),      BlockDevices(), std::make_shared<LinuxDeviceAccess>(), systemDevicesOfThisMachine, {},
        sayOnStandardOutput};
    if (const std::optional<VolumeOwner> owner = VolumeOwner::whoAskedForRights())
        tools.giveToUser = [owner](const QByteArray &node, const QString &type) { return owner->take(node, type); };
    return tools;
}

} // namespace Quillmere
