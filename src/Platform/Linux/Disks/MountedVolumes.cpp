#include "Platform/Linux/Disks/MountedVolumes.h"

#include "Platform/Linux/Disks/IdleMounts.h"
#include "Platform/Linux/Programs/UserEnvironment.h"

#include <QSet>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include <unistd.h>

namespace Quillmere {

namespace {

// What programs are packed in, and is mounted to run them.
constexpr std::array<std::string_view, 3> packedTypes = {"cramfs", "erofs", "squashfs"};

bool isForTheUser(const MountEntry &mount)
{
    const bool isPacked = std::ranges::find(packedTypes, std::string_view(mount.type.constData())) != packedTypes.end();
    return !isPacked && !mount.location.isWithin(FilePath("/boot")) && !mount.location.isWithin(FilePath("/efi"));
}

struct FirstMount
{
    MountEntry entry;
    quint64 number = 0;
};

/// Of each device the first mount that the user may know. Of hundreds of mounts of one, the kernel is asked once.
QList<FirstMount> firstMounts(const QList<MountEntry> &table, const BlockDevices &devices)
{
    QList<FirstMount> mounts;
    QSet<quint64> seen;
    for (const MountEntry &entry : table) {
        const auto number
            = isForTheUser(entry) ? devices.numberOfMount(entry.device, FilePath(entry.source)) : std::nullopt;
        if (!number || seen.contains(*number))
            continue;
        seen.insert(*number);
        mounts.append({entry, *number});
    }
    return mounts;
}

Result<SystemPlaces> placesOfThisUser()
{
    const auto noVariables = [](const char *) { return QByteArray(); };
    return SystemPlaces::ofThisMachine(UserEnvironment::of(::geteuid(), noVariables).home);
}

} // namespace

QList<MountedVolume> volumesIn(const QList<MountEntry> &table, const BlockDevices &devices)
{
    QList<MountedVolume> volumes;
    for (const FirstMount &mount : firstMounts(table, devices)) {
        if (const std::optional<BlockDevice> device = devices.device(mount.number))
            volumes.append(
                {mount.entry.location, mount.number, device->sequence, mount.entry.isReadOnly, mount.entry.type});
    }
    return volumes;
}

MountedVolumes::MountedVolumes()
    : MountedVolumes(placesOfThisUser, BlockDevices())
{
}

MountedVolumes::MountedVolumes(Places places, BlockDevices devices)
    : m_places(std::move(places))
    , m_devices(std::move(devices))
{
}

QList<FilePath> MountedVolumes::places(const DiskService &service) const
{
    const Result<SystemPlaces> places = m_places();
    const DiskObjects objects = service.objects().valueOr({});
    QList<FilePath> list;
    for (const MountedVolume &volume : places ? volumesIn(places.value().mounts, m_devices) : QList<MountedVolume>()) {
        const DiskBlock *block = objects.block(volume.number);
        if (!block || !block->isIgnored)
            list.append(volume.place);
    }
    return list;
}

Result<VolumeValues> MountedVolumes::values(const FilePath &place, const DiskService &service) const
{
    const Result<SystemPlaces> places = m_places();
    if (!places)
        return places.failure();
    const QList<FirstMount> mounts = firstMounts(places.value().mounts, m_devices);
    const auto isThere = [&](const FirstMount &mount) { return mount.entry.location == place.standardized(); };
    const auto volume = std::ranges::find_if(mounts, isThere);
    const auto device = volume == mounts.end() ? std::nullopt : m_devices.device(volume->number);
    const auto disk = device ? m_devices.wholeDisk(volume->number) : std::nullopt;
    if (!disk)
        return Failure{Failure::Kind::NotFound, place, u"No volume is mounted there."_qs};
    const DiskObjects objects = service.objects().valueOr({});
    const DiskBlock *block = objects.block(volume->number);
    const DiskBlock *diskBlock = objects.block(disk->number);
    VolumeValues values;
    if (block && !block->label.isEmpty())
        values.name = block->label;
    values.isRemovable = disk->isPluggable;
    const bool isPluggedIn = diskBlock ? objects.isExternal(*diskBlock) : disk->isPluggable;
    values.isInternal = !isPluggedIn || isOfSystem(volume->number, places.value());
    values.isReadOnly = volume->entry.isReadOnly;
    values.isWriteProtected = disk->isReadOnly || device->isReadOnly;
    return values;
}

// A system that runs from a stick has that stick for its disk. Where it cannot be told, every disk may be it.
bool MountedVolumes::isOfSystem(quint64 number, const SystemPlaces &places) const
{
    const SystemPlaces awake = wakeBootFolders(places.mounts) ? m_places().valueOr(places) : places;
    const Result<QSet<quint64>> system = systemDevices(awake, m_devices);
    const QList<quint64> foundations = m_devices.foundations(number);
    return !system || std::ranges::any_of(foundations, [&](quint64 device) { return system.value().contains(device); });
}

} // namespace Quillmere
