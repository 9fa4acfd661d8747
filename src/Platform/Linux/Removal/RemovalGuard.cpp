#include "Platform/Linux/Removal/RemovalGuard.h"

#include "Platform/Linux/Disks/Mount.h"
#include "Platform/Linux/Files/ErrnoFailure.h"
#include "Platform/Linux/Files/HeldItem.h"
#include "Platform/Linux/Files/OpenAt.h"

#include <QSet>

#include <cerrno>
#include <optional>

#include <fcntl.h>

namespace Quillmere {

namespace {

bool isSystemFolder(const FilePath &path)
{
    static const QSet<QByteArray> names = {"bin",  "boot", "dev",  "etc", "home", "media", "mnt", "opt", "proc",
                                           "root", "run",  "sbin", "srv", "sys",  "tmp",   "usr", "var"};
    const QByteArray name = path.lastPathComponent();
    if (path.deletingLastPathComponent() != FilePath("/"))
        return false;
    return name == "/" || name.startsWith("lib") || names.contains(name);
}

Result<bool> orFailure(const std::optional<bool> &answer, const FilePath &path)
{
    return answer ? Result<bool>(*answer) : failureFromErrno(errno, path);
}

/// True when @p wanted is the folder at @p path, links followed, or one of those above it. Where nothing is, it is not.
Result<bool> isOnTheWayTo(const FilePath &path, const FileIdentity &wanted)
{
    const Result<FileDescriptor> folder = openFolder(path, LinksAbove::Follow, O_PATH);
    if (!folder && folder.failure().kind == Failure::Kind::NotFound)
        return false;
    Result<bool> answer
        = folder ? orFailure(isAtOrAbove(wanted, folder.value().number()), path) : Result<bool>(folder.failure());
    const FilePath above = path.deletingLastPathComponent();
    // A folder that is closed to the user cannot be gone through, neither down nor up; those above it can be asked for.
    const bool isClosed = !answer && answer.failure().kind == Failure::Kind::NoPermission;
    return isClosed && above != path ? isOnTheWayTo(above, wanted) : answer;
}

/// The trash folders of a volume stand at its top, and their names are reserved there: `.Trash`, `.Trash/$uid` and
/// `.Trash-$uid`, the last two with `files` and `info` in them.
Result<bool> isPartOfVolumeTrash(const ItemPlace &place)
{
    FileDescriptor folder = openAt(place.folder.number(), ".", O_PATH | O_DIRECTORY);
    FilePath path = place.path;
    for (int level = 1; level <= 3; ++level) {
        if (!folder.isOpen())
            return failureFromErrno(errno, place.path);
        const QByteArray name = path.lastPathComponent();
        const bool isTrash = name == ".Trash" || (name.startsWith(".Trash-") && level <= 2);
        if (isTrash && isMountRoot(folder.number()))
            return true;
        folder = openAt(folder.number(), "..", O_PATH | O_DIRECTORY);
        path = path.deletingLastPathComponent();
    }
    return false;
}

/// Nothing that the user holds can be what is missing, or lie in what is closed to the user.
bool isOutOfReach(const Failure &failure)
{
    return failure.kind == Failure::Kind::NotFound || failure.kind == Failure::Kind::NoPermission;
}

Failure refusal(const ItemPlace &place, const QString &reason)
{
    return {Failure::Kind::Protected, place.path, reason};
}

} // namespace

RemovalGuard::RemovalGuard(UserEnvironment environment)
    : m_environment(std::move(environment))
    , m_trash(m_environment.homeTrash())
{
}

Result<void> RemovalGuard::check(const ItemPlace &place, const FileDescriptor &item) const
{
    if (isSystemFolder(place.path))
        return refusal(place, u"A top folder of the system"_qs);
    if (m_environment.home.isWithin(place.path))
        return refusal(place, u"The home, or what it lies in"_qs);
    const Result<bool> isTrash = m_trash.isWithin(place.path) ? Result<bool>(true) : isPartOfTrash(place);
    if (!isTrash)
        return isTrash.failure();
    if (isTrash.value())
        return refusal(place, u"The trash, or what it lies in"_qs);
    if (isMountRoot(item.number()))
        return refusal(place, u"A mount point"_qs);
    const Result<bool> holdsOurs = holdsWhatIsOurs(place, item);
    if (!holdsOurs)
        return holdsOurs.failure();
    if (holdsOurs.value())
        return refusal(place, u"The home or the trash lies in it"_qs);
    return {};
}

Result<bool> RemovalGuard::holdsWhatIsOurs(const ItemPlace &place, const FileDescriptor &item) const
{
    struct stat status = {};
    if (::fstat(item.number(), &status) != 0)
        return failureFromErrno(errno, place.path);
    if (!S_ISDIR(status.st_mode))
        return false;
    const FileIdentity identity = FileIdentity::of(status);
    Result<bool> holds = isOnTheWayTo(m_environment.home, identity);
    return !holds || holds.value() ? holds : isOnTheWayTo(m_trash, identity);
}

Result<bool> RemovalGuard::isPartOfTrash(const ItemPlace &place) const
{
    Result<bool> isPart = isPartOfVolumeTrash(place);
    if (!isPart || isPart.value())
        return isPart;
    const Result<FileDescriptor> trash = openFolder(m_trash, LinksAbove::Follow, O_PATH);
    if (!trash)
        return isOutOfReach(trash.failure()) ? Result<bool>(false) : trash.failure();
    const std::optional<FileIdentity> identity = FileIdentity::of(trash.value().number());
    const std::optional<FileIdentity> folder = FileIdentity::of(place.folder.number());
    return identity && folder ? Result<bool>(identity == folder) : failureFromErrno(errno, place.path);
}

} // namespace Quillmere
