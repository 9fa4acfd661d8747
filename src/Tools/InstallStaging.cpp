#include "Tools/InstallStaging.h"

#include "Platform/Linux/Files/ErrnoFailure.h"
#include "Platform/Linux/Files/OpenAt.h"
#include "Platform/Linux/Removal/DeepRemoval.h"
#include "Platform/Linux/Removal/FolderEmptying.h"
#include "Platform/Linux/Removal/RemovalRecord.h"

#include <cerrno>
#include <cstdio>
#include <tuple>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Quillmere {

namespace {

constexpr const char *stagingName = ".quillmere-installing";
constexpr int mostAttempts = 64;

/// Nothing open where another program has just cleared it away.
Result<FileDescriptor> openLocked(int folder, const FilePath &path)
{
    FileDescriptor staging = openAt(folder, stagingName, O_RDONLY | O_DIRECTORY | O_NOFOLLOW);
    if (!staging.isOpen() && errno == ENOENT)
        return FileDescriptor();
    struct stat status = {};
    if (!staging.isOpen() || ::fstat(staging.number(), &status) != 0)
        return failureFromErrno(errno, path.appending(stagingName));
    // A lock on it that somebody else could take would hold this up for ever.
    if (status.st_uid != ::geteuid() || (status.st_mode & (S_IRWXG | S_IRWXO)) != 0)
        return Failure{Failure::Kind::Protected, path.appending(stagingName), u"It is somebody else's"_qs};
    while (::flock(staging.number(), LOCK_EX) != 0) {
        if (errno != EINTR)
            return failureFromErrno(errno, path.appending(stagingName));
    }
    if (::fstat(staging.number(), &status) != 0 || status.st_nlink == 0)
        return FileDescriptor();
    return staging;
}

void empty(int staging, const FilePath &path)
{
    // Each reading begins where the last one of the same open ended.
    const FileDescriptor anew = openAt(staging, ".", O_RDONLY | O_DIRECTORY);
    const int folder = anew.number();
    const MayRemove everything;
    RemovalRecord record;
    // What does not go now goes the next time.
    for (const QByteArray &name : sweepFolder(folder, everything).folders)
        std::ignore = DeepRemoval(folder, path, everything, record).remove(name);
}

} // namespace

Result<InstallStaging> InstallStaging::make(int folder, const FilePath &path)
{
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        if (::mkdirat(folder, stagingName, S_IRWXU) != 0 && errno != EEXIST)
            return failureFromErrno(errno, path.appending(stagingName));
        Result<FileDescriptor> staging = openLocked(folder, path);
        if (!staging)
            return staging.failure();
        if (!staging.value().isOpen())
            continue;
        empty(staging.value().number(), path.appending(stagingName));
        return InstallStaging(folder, path, std::move(staging.value()));
    }
    return Failure{Failure::Kind::Busy, path, u"Other programs keep clearing this folder"_qs};
}

InstallStaging::InstallStaging(int folder, FilePath path, FileDescriptor staging)
    : m_folder(folder)
    , m_path(std::move(path))
    , m_staging(std::move(staging))
{
}

InstallStaging::~InstallStaging()
{
    if (!m_staging.isOpen())
        return;
    empty(m_staging.number(), m_path.appending(stagingName));
    ::unlinkat(m_folder, stagingName, AT_REMOVEDIR);
}

Result<void> InstallStaging::replace(const QByteArray &staged, const QByteArray &name) const
{
    Result<void> added = add(staged, name);
    if (added || added.failure().kind != Failure::Kind::AlreadyExists)
        return added;
    return move(staged, name, RENAME_EXCHANGE);
}

Result<void> InstallStaging::add(const QByteArray &staged, const QByteArray &name) const
{
    return move(staged, name, RENAME_NOREPLACE);
}

Result<void> InstallStaging::move(const QByteArray &staged, const QByteArray &name, unsigned int how) const
{
    // Otherwise a crash could leave the name with nothing behind it.
    if (::syncfs(m_staging.number()) != 0
        || ::renameat2(m_staging.number(), staged.constData(), m_folder, name.constData(), how) != 0)
        return failureFromErrno(errno, m_path.appending(name));
    if (::fsync(m_folder) != 0)
        return failureFromErrno(errno, m_path);
    return {};
}

} // namespace Quillmere
