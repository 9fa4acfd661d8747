#include "Tools/Disks/MountPlace.h"

#include "Platform/Linux/Disks/Mount.h"
#include "Platform/Linux/Files/ErrnoFailure.h"

#include <algorithm>
#include <cerrno>
#include <tuple>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Quillmere {

namespace {

Failure refused(const FilePath &place, const QString &reason)
{
    return {Failure::Kind::Protected, place, reason};
}

bool isBelow(const FilePath &place, const QList<FilePath> &folders)
{
    if (place != place.standardized() || !place.bytes().startsWith('/') || place.bytes().contains('\0'))
        return false;
    const FilePath above = place.deletingLastPathComponent();
    return std::ranges::any_of(folders, [&](const FilePath &folder) {
        return above == folder || above.deletingLastPathComponent() == folder;
    });
}

bool isRootsAlone(int folder)
{
    struct stat status = {};
    return ::fstat(folder, &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == 0
        && (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

bool isEmpty(int folder)
{
    const int readable = ::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    DIR *listing = readable < 0 ? nullptr : ::fdopendir(readable);
    if (!listing) {
        if (readable >= 0)
            ::close(readable);
        return false;
    }
    int entries = 0;
    // Two of them are "." and "..".
    while (entries <= 2 && ::readdir(listing))
        ++entries;
    ::closedir(listing);
    return entries <= 2;
}

/// Level by level from the top, each of which nobody but root may change.
Result<FileDescriptor> openFolder(const FilePath &folder)
{
    FileDescriptor open(::open("/", O_PATH | O_DIRECTORY | O_CLOEXEC));
    for (const QByteArray &name : folder.bytes().mid(1).split('/')) {
        if (!open.isOpen() || !isRootsAlone(open.number()))
            return refused(folder, u"Others than root may change what stands there."_qs);
        open = FileDescriptor(::openat(open.number(), name.constData(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    }
    if (!open.isOpen())
        return failureFromErrno(errno, folder);
    if (!isRootsAlone(open.number()))
        return refused(folder, u"Others than root may change what stands there."_qs);
    return open;
}

} // namespace

MountPlace::MountPlace(FilePath path, FileDescriptor parent, bool wasMade)
    : m_path(std::move(path))
    , m_parent(std::move(parent))
    , m_wasMade(wasMade)
{
}

Result<MountPlace> MountPlace::make(const FilePath &place, const QList<FilePath> &folders)
{
    if (!isBelow(place, folders))
        return refused(place, u"Volumes are not mounted there."_qs);
    Result<FileDescriptor> parent = openFolder(place.deletingLastPathComponent());
    if (!parent)
        return parent.failure();
    const QByteArray name = place.lastPathComponent();
    const bool wasMade = ::mkdirat(parent.value().number(), name.constData(), S_IRWXU) == 0;
    if (!wasMade && errno != EEXIST)
        return failureFromErrno(errno, place);
    MountPlace made(place, std::move(parent).value(), wasMade);
    const FileDescriptor folder(
        ::openat(made.m_parent.number(), name.constData(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!folder.isOpen() || !isRootsAlone(folder.number()) || isMountRoot(folder.number()))
        return refused(place, u"Something else stands there."_qs);
    if (!isEmpty(folder.number()))
        return refused(place, u"The folder is not empty."_qs);
    return made;
}

void MountPlace::takeBack() const
{
    if (m_wasMade)
        std::ignore = ::unlinkat(m_parent.number(), m_path.lastPathComponent().constData(), AT_REMOVEDIR);
}

} // namespace Quillmere
