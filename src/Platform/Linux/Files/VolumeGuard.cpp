#include "Platform/Linux/Files/VolumeGuard.h"

#include "Platform/Linux/Disks/KnownMounts.h"
#include "Platform/Linux/Files/HeldItem.h"
#include "Platform/Linux/Files/LinkResolution.h"
#include "Platform/Linux/Files/OpenAt.h"

#include <algorithm>
#include <cerrno>

#include <fcntl.h>

namespace Quillmere {

VolumeGuard::VolumeGuard(const FilePath &home, std::chrono::milliseconds patience)
    : m_home(resolveLinks(home).value_or(home.standardized()))
    , m_patience(patience)
{
}

bool VolumeGuard::isAnswering(const FilePath &path) const
{
    return isPlainlyRelied(path.standardized(), FinalLink::Follow) || isHolderAnswering(resolved(path));
}

bool VolumeGuard::isItemAnswering(const FilePath &path) const
{
    return isPlainlyRelied(path.standardized(), FinalLink::Leave) || isHolderAnswering(placeOf(path));
}

bool VolumeGuard::mayEnter(const FilePath &mountPoint) const
{
    const std::optional<MountEntry> mount = mountThatHolds(mountPoint, knownMounts());
    return !mount || isRelied(*mount) || (!isTrigger(*mount) && answers(mount->location));
}

std::optional<FilePath> VolumeGuard::resolve(const FilePath &path) const
{
    return resolveLinks(path, [this](const FilePath &mountPoint) { return mayEnter(mountPoint); });
}

FilePath VolumeGuard::placeOf(const FilePath &path) const
{
    const FilePath item = path.standardized();
    return resolved(item.deletingLastPathComponent()).appending(item.lastPathComponent());
}

FilePath VolumeGuard::resolved(const FilePath &path) const
{
    return resolve(path).value_or(path.standardized());
}

Result<VolumeCapacity> VolumeGuard::capacity(const FilePath &path, CapacityKeys keys) const
{
    return m_capacities.ask(path, keys);
}

bool VolumeGuard::isRelied(const MountEntry &mount) const
{
    return alwaysAnswers(mount) || m_home.isWithin(mount.location);
}

bool VolumeGuard::isPlainlyRelied(const FilePath &path, FinalLink link) const
{
    const QList<MountEntry> mounts = knownMounts();
    const bool isRelyingAbove = std::ranges::all_of(
        mounts, [&](const MountEntry &mount) { return !path.isWithin(mount.location) || isRelied(mount); });
    if (!isRelyingAbove)
        return false;
    const FileDescriptor item = openAt(AT_FDCWD, path.bytes(), O_PATH | O_NOFOLLOW, RESOLVE_NO_SYMLINKS);
    if (!item.isOpen())
        return errno == ENOENT || errno == ENOTDIR;
    return link == FinalLink::Leave || !isLink(item.number());
}

bool VolumeGuard::isHolderAnswering(const FilePath &actual) const
{
    const std::optional<MountEntry> mount = mountThatHolds(actual, knownMounts());
    // One volume is asked in one place, whatever is looked for on it; which one a trigger will mount is yet to be seen.
    return !mount || isRelied(*mount) || answers(isTrigger(*mount) ? actual : mount->location);
}

bool VolumeGuard::answers(const FilePath &path) const
{
    const Result<VolumeCapacity> answer = m_capacities.ask(path, CapacityKey::Total, m_patience);
    return answer || answer.failure().kind != Failure::Kind::NotAnswering;
}

} // namespace Quillmere
