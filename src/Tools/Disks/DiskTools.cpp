#include "Tools/Disks/DiskTools.h"

#include "Platform/Linux/Disks/IdleMounts.h"
#include "Platform/Linux/Disks/SystemDisks.h"
#include "Tools/Disks/LinuxDeviceAccess.h"
#include "Tools/Disks/VolumeOwner.h"
#include "Tools/ProgramStart.h"

#include <unistd.h>

namespace Quillmere {

namespace {

Result<QSet<quint64>> systemDevicesFor(const Result<Caller> &caller)
{
    if (!caller)
        return caller.failure();
    Result<SystemPlaces> places = SystemPlaces::ofThisMachine(caller.value().home);
    if (places && wakeBootFolders(places.value().mounts))
        places = SystemPlaces::ofThisMachine(caller.value().home);
    return places ? systemDevices(places.value(), BlockDevices()) : places.failure();
}

} // namespace

DiskTools DiskTools::ofThisMachine(const Result<Caller> &caller)
{
    DiskTools tools{DiskService(),
                    BlockDevices(),
                    std::make_shared<LinuxDeviceAccess>(),
                    [caller] { return systemDevicesFor(caller); },
                    {},
                    Quillmere::say};
    // What root makes for itself is its own already.
    if (caller && caller.value().user != ::geteuid())
        tools.giveToUser = [owner = caller.value()](const QByteArray &node, const QString &type) {
            return giveVolume(owner, node, type);
        };
    return tools;
}

} // namespace Quillmere
