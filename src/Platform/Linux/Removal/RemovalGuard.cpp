#include "Platform/Linux/Removal/RemovalGuard.h"

#include "Platform/Linux/Disks/Mount.h"
#include "Platform/Linux/Files/FileIdentity.h"
#include "Platform/Linux/Files/OpenAt.h"

#include <QSet>

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

FileIdentity identityOf(int descriptor)
{
    struct stat status = {};
    return ::fstat(descriptor, &status) == 0 ? FileIdentity::of(status) : FileIdentity();
}

/// True when @p wanted is the folder at @p path, links followed, or one of those above it.
bool isAtOrAbove(const FileIdentity &wanted, const FilePath &path)
{
    Result<FileDescriptor> opened = openFolder(path, LinksAbove::Follow, O_PATH);
    if (!opened)
        return false;
    FileDescriptor folder = std::move(opened).value();
    FileIdentity identity = identityOf(folder.number());
    FileIdentity below;
    // The root is its own parent.
    while (folder.isOpen() && identity != below) {
        if (identity == wanted)
            return true;
        below = identity;
        folder = openAt(folder.number(), "..", O_PATH | O_DIRECTORY);
        identity = identityOf(folder.number());
    }
    return false;
}

/// The trash folders of a volume stand at its top, and their names are reserved there: `.Trash`, `.Trash/$uid` and
/// `.Trash-$uid`, the last two with `files` and `info` in them.
bool isPartOfVolumeTrash(const ItemPlace &place)
{
    FileDescriptor folder = openAt(place.folder.number(), ".", O_PATH | O_DIRECTORY);
    FilePath path = place.path;
    for (int level = 1; level <= 3 && folder.isOpen(); ++level) {
        const QByteArray name = path.lastPathComponent();
        const bool isTrash = name == ".Trash" || (name.startsWith(".Trash-") && level <= 2);
        if (isTrash && isMountRoot(folder.number()))
            return true;
        folder = openAt(folder.number(), "..", O_PATH | O_DIRECTORY);
        path = path.deletingLastPathComponent();
    }
    return false;
}

Failure refusal(const ItemPlace &place, const QString &reason)
{
    return {Failure::Kind::Protected, place.path, reason};
}

} // namespace

RemovalGuard::RemovalGuard(UserEnvironment environment)
    : m_environment(std::move(environment))
    , m_trash(m_environment.dataHome.appending("Trash"))
{
}

Result<void> RemovalGuard::check(const ItemPlace &place, const FileDescriptor &item) const
{
    if (isSystemFolder(place.path))
        return refusal(place, u"A top folder of the system"_qs);
    if (m_environment.home.isWithin(place.path))
        return refusal(place, u"The home, or what it lies in"_qs);
    if (m_trash.isWithin(place.path) || isPartOfTrash(place))
        return refusal(place, u"The trash, or what it lies in"_qs);
    if (isMountRoot(item.number()))
        return refusal(place, u"A mount point"_qs);
    if (holdsWhatIsOurs(item))
        return refusal(place, u"The home or the trash lies in it"_qs);
    return {};
}

bool RemovalGuard::holdsWhatIsOurs(const FileDescriptor &item) const
{
    struct stat status = {};
    if (::fstat(item.number(), &status) != 0 || !S_ISDIR(status.st_mode))
        return false;
    const FileIdentity identity = FileIdentity::of(status);
    return isAtOrAbove(identity, m_environment.home) || isAtOrAbove(identity, m_trash);
}

bool RemovalGuard::isPartOfTrash(const ItemPlace &place) const
{
    if (isPartOfVolumeTrash(place))
        return true;
    const Result<FileDescriptor> trash = openFolder(m_trash, LinksAbove::Follow, O_PATH);
    return trash && identityOf(trash.value().number()) == identityOf(place.folder.number());
}

} // namespace Quillmere
