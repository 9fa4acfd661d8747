#include "Platform/Linux/Removal/TrashFolder.h"

#include "Platform/Linux/Files/ErrnoFailure.h"
#include "Platform/Linux/Files/HeldItem.h"
#include "Platform/Linux/Files/OpenAt.h"
#include "Platform/Linux/Files/PrivateFolder.h"

#include <cerrno>
#include <tuple>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/vfs.h>

namespace Quillmere {

namespace {

Result<FileDescriptor> openOrMakeWithParents(const FilePath &path)
{
    Result<FileDescriptor> folder = openFolder(path, LinksAbove::Follow, O_PATH);
    if (folder || folder.failure().kind != Failure::Kind::NotFound || path == FilePath("/"))
        return folder;
    const Result<FileDescriptor> parent = openOrMakeWithParents(path.deletingLastPathComponent());
    if (!parent)
        return parent.failure();
    return openOrMakePrivateFolder(parent.value().number(), path.lastPathComponent(), FinalLink::Follow, path);
}

Result<TrashFolder> withItsFolders(FileDescriptor folder, const FilePath &path)
{
    TrashFolder trash;
    for (const auto &[name, descriptor] : {std::pair("files", &trash.files), std::pair("info", &trash.info)}) {
        Result<FileDescriptor> opened
            = openOrMakePrivateFolder(folder.number(), name, FinalLink::Refuse, path.appending(name));
        if (!opened)
            return opened.failure();
        *descriptor = std::move(opened).value();
    }
    struct statfs status = {};
    if (::fstatfs(trash.info.number(), &status) == 0 && status.f_namelen > 0)
        trash.longestName = qMin<qsizetype>(trash.longestName, status.f_namelen);
    trash.folder = std::move(folder);
    trash.path = path;
    return trash;
}

bool isPrivate(const struct stat &status, uid_t user)
{
    return S_ISDIR(status.st_mode) && status.st_uid == user && (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

/// Nobody but @p user may be able to put anything into the trash. File systems without modes keep what they show.
Result<FileDescriptor> openPrivate(int parent, const QByteArray &name, uid_t user, const FilePath &path)
{
    Result<FileDescriptor> opened = openOrMakePrivateFolder(parent, name, FinalLink::Refuse, path);
    if (!opened)
        return opened;
    const int folder = opened.value().number();
    struct stat status = {};
    if (::fstat(folder, &status) == 0 && status.st_uid == user && (status.st_mode & 0777) != mode_t(S_IRWXU))
        std::ignore = changeMode(folder, S_IRWXU);
    if (::fstat(folder, &status) != 0 || !isPrivate(status, user))
        return Failure{Failure::Kind::NotSupported, path, u"The trash of this volume is not safely the user's"_qs};
    return opened;
}

bool isSticky(int folder)
{
    struct stat status = {};
    return ::fstat(folder, &status) == 0 && (status.st_mode & S_ISVTX) != 0;
}

Result<TrashFolder> sharedTrash(const VolumeTop &top, uid_t user)
{
    const FilePath shared = top.path.appending(".Trash");
    const FileDescriptor folder = openAt(top.folder.number(), ".Trash", O_PATH | O_DIRECTORY | O_NOFOLLOW);
    if (!folder.isOpen() || !isSticky(folder.number()))
        return Failure{Failure::Kind::NotSupported, shared, u"No sticky folder of this name"_qs};
    const QByteArray name = QByteArray::number(user);
    const FilePath path = shared.appending(name);
    Result<FileDescriptor> own = openPrivate(folder.number(), name, user, path);
    if (!own)
        return own.failure();
    return withItsFolders(std::move(own).value(), path);
}

Result<TrashFolder> ownTrash(const VolumeTop &top, uid_t user)
{
    const QByteArray name = ".Trash-" + QByteArray::number(user);
    const FilePath path = top.path.appending(name);
    Result<FileDescriptor> own = openPrivate(top.folder.number(), name, user, path);
    if (!own)
        return own.failure();
    return withItsFolders(std::move(own).value(), path);
}

} // namespace

Result<TrashFolder> TrashFolder::ofHome(const UserEnvironment &environment)
{
    const FilePath path = environment.homeTrash();
    Result<FileDescriptor> folder = openOrMakeWithParents(path);
    if (!folder)
        return folder.failure();
    return withItsFolders(std::move(folder).value(), path);
}

Result<TrashFolder> TrashFolder::ofVolume(const VolumeTop &top, uid_t user)
{
    Result<TrashFolder> trash = sharedTrash(top, user);
    if (!trash)
        trash = ownTrash(top, user);
    if (trash)
        trash.value().top = top.path;
    return trash;
}

QByteArray TrashFolder::recordedPath(const FilePath &path) const
{
    if (top.isEmpty())
        return path.bytes();
    return path.bytes().sliced(top == FilePath("/") ? 1 : top.bytes().size() + 1);
}

} // namespace Quillmere
