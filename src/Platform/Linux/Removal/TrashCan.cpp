#include "Platform/Linux/Removal/TrashCan.h"

#include "Platform/Linux/Files/ErrnoFailure.h"
#include "Platform/Linux/Files/FileIdentity.h"
#include "Platform/Linux/Files/HeldItem.h"
#include "Platform/Linux/Files/OpenAt.h"
#include "Platform/Linux/Removal/StagingFolder.h"
#include "Platform/Linux/Removal/TrashByCopy.h"
#include "Platform/Linux/Removal/TrashMove.h"

#include <cerrno>
#include <tuple>

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/vfs.h>

namespace Quillmere {

namespace {

/// What lies in memory is gone with the next start: no place for what should be recoverable.
bool livesInMemory(int descriptor)
{
    struct statfs status = {};
    return ::fstatfs(descriptor, &status) == 0 && (status.f_type == TMPFS_MAGIC || status.f_type == RAMFS_MAGIC);
}

dev_t deviceOf(int descriptor)
{
    struct stat status = {};
    return ::fstat(descriptor, &status) == 0 ? status.st_dev : 0;
}

bool isItem(const FileDescriptor &item, int folder, const QByteArray &name)
{
    struct stat held = {};
    struct stat found = {};
    return ::fstat(item.number(), &held) == 0 && ::fstatat(folder, name.constData(), &found, AT_SYMLINK_NOFOLLOW) == 0
        && FileIdentity::of(held) == FileIdentity::of(found);
}

/// Of the folder at @p path or of the nearest above it that exists.
dev_t deviceAt(const FilePath &path)
{
    const Result<FileDescriptor> folder = openFolder(path, LinksAbove::Follow, O_PATH);
    if (folder)
        return deviceOf(folder.value().number());
    return path == FilePath("/") ? 0 : deviceAt(path.deletingLastPathComponent());
}

/// A trash of the item's own volume. The volume of the home has the home trash: another mount of it shows a part under
/// another name, and a trash there would be one that nobody finds.
Result<TrashFolder> volumeTrash(const ItemPlace &place, const UserEnvironment &environment)
{
    const int folder = place.folder.number();
    if (livesInMemory(folder) || deviceOf(folder) == deviceAt(environment.homeTrash()))
        return Failure{Failure::Kind::NotSupported, place.path, u"This volume takes no trash"_qs};
    const Result<VolumeTop> top = VolumeTop::of(place);
    if (!top)
        return top.failure();
    return TrashFolder::ofVolume(top.value(), environment.user);
}

} // namespace

TrashCan::TrashCan(UserEnvironment environment)
    : m_environment(std::move(environment))
    , m_guard(m_environment)
{
}

Result<FilePath> TrashCan::trash(const FilePath &path) const
{
    const Result<ItemPlace> opened = ItemPlace::open(path, LinksAbove::Refuse);
    if (!opened)
        return opened.failure();
    const ItemPlace &place = opened.value();
    const FileDescriptor item = openAt(place.folder.number(), place.name, O_PATH | O_NOFOLLOW);
    if (!item.isOpen())
        return failureFromErrno(errno, path);
    if (const Result<void> allowed = m_guard.check(place, item); !allowed)
        return allowed.failure();
    if (isFolder(item.number()) && holdsMount(place.path))
        return Failure{Failure::Kind::Busy, path, u"Another file system is mounted in it"_qs};

    const Result<TrashFolder> homeTrash = TrashFolder::ofHome(m_environment);
    if (homeTrash)
        StagingFolder::clearAbandoned(homeTrash.value());
    if (homeTrash && mountOf(place.folder.number()) == mountOf(homeTrash.value().files.number())) {
        const Result<FilePath> moved = move(place, item, homeTrash.value());
        return moved || moved.failure().kind != Failure::Kind::NotSupported ? moved : copy(place, item, homeTrash);
    }
    const Result<TrashFolder> ownTrash = volumeTrash(place, m_environment);
    if (ownTrash) {
        const Result<FilePath> moved = move(place, item, ownTrash.value());
        if (moved || moved.failure().kind != Failure::Kind::NotSupported)
            return moved;
    }
    return copy(place, item, homeTrash);
}

Result<FilePath> TrashCan::move(const ItemPlace &place, const FileDescriptor &item, const TrashFolder &trash) const
{
    Result<TrashReservation> filled = moveIntoTrash(place.folder.number(), place.name, place.path, trash);
    if (!filled)
        return filled.failure();
    if (!isItem(item, trash.files.number(), filled.value().name())) {
        // Somebody has put another thing in its place between the look and the move: that is not what was asked for.
        std::ignore = filled.value().empty(place.folder.number(), place.name);
        return Failure{Failure::Kind::Busy, place.path, u"Replaced by something else meanwhile"_qs};
    }
    if (isItem(item, place.folder.number(), place.name))
        return Failure{Failure::Kind::Other, place.path, u"Still there after the move"_qs};
    return trash.path.appending("files").appending(filled.value().name());
}

Result<FilePath> TrashCan::copy(const ItemPlace &place, const FileDescriptor &item,
                                const Result<TrashFolder> &homeTrash) const
{
    if (!homeTrash)
        return homeTrash.failure();
    const Result<QByteArray> name = trashByCopy(place, item, homeTrash.value());
    if (!name)
        return name.failure();
    return homeTrash.value().path.appending("files").appending(name.value());
}

} // namespace Quillmere
