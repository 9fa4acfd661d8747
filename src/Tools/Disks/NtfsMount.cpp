#include "Tools/Disks/NtfsMount.h"

#include "Tools/ChildProgram.h"
#include "Tools/Disks/ChosenDisk.h"
#include "Tools/Disks/MountPlace.h"

namespace Quillmere {

namespace {

// ntfs-3g.probe(8).
constexpr int isReady = 0;
constexpr int isHibernated = 14;
constexpr int isUnclean = 15;

/// Empty when it can be written to as it is.
QString whyNotForWriting(const ChosenDisk &disk, const NtfsPrograms &programs)
{
    const Result<ChildEnd> probed
        = runChild({argumentOf(programs.probe), {u"--readwrite"_qs, argumentOf(nodeOf(disk.identity().node))}});
    if (!probed)
        return u"ntfs-3g is not installed, so %1 cannot be mounted with it."_qs.arg(disk.name());
    switch (probed.value().status) {
    case isReady:
        return {};
    case isHibernated:
        return u"Windows is asleep on %1, or was shut down fast. Start it there and shut it down completely; until "
               u"then "
               "nothing is changed on it."_qs.arg(disk.name());
    case isUnclean:
        return u"%1 was not removed safely the last time. Let Windows check it; until then nothing is changed on it."_qs
            .arg(disk.name());
    default:
        return u"%1 cannot be mounted for writing: %2"_qs.arg(disk.name(),
                                                              QString::fromUtf8(probed.value().said).trimmed());
    }
}

ToolEnd mountAt(const MountPlace &place, const ChosenDisk &disk, const NtfsPrograms &programs)
{
    // norecover: what an unclean volume remembers is never thrown away to get it mounted.
    const Result<ChildEnd> mounted = runChild({argumentOf(programs.driver),
                                               {argumentOf(nodeOf(disk.identity().node)), argumentOf(place.path()),
                                                u"-o"_qs, u"allow_other,nosuid,nodev,norecover"_qs}});
    if (mounted && mounted.value().status == 0)
        return {};
    place.takeBack();
    const QString reason = mounted ? QString::fromUtf8(mounted.value().said).trimmed() : mounted.failure().detail;
    return {1, u"%1 could not be mounted: %2"_qs.arg(disk.name(), reason)};
}

} // namespace

ToolEnd mountNtfs(const DiskTools &tools, const NtfsPrograms &programs, const FilePath &place,
                  const DiskIdentity &volume)
{
    const Result<ChosenDisk> chosen = ChosenDisk::choose(tools, volume);
    if (!chosen)
        return {1, chosen.failure().detail};
    const ChosenDisk &disk = chosen.value();
    if (disk.block().type != u"ntfs")
        return {1, u"%1 is no NTFS volume."_qs.arg(disk.name())};
    if (!disk.block().mountPoints.isEmpty())
        return {1, u"%1 is mounted already."_qs.arg(disk.name())};
    if (const QString reason = whyNotForWriting(disk, programs); !reason.isEmpty())
        return {1, reason};
    const Result<MountPlace> made = MountPlace::make(place, programs.mountFolders);
    if (!made)
        return {1, u"%1 cannot be mounted at %2: %3"_qs.arg(disk.name(), place.displayText(), made.failure().detail)};
    return mountAt(made.value(), disk, programs);
}

} // namespace Quillmere
