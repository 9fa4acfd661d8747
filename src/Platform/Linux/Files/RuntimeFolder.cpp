#include "Platform/Linux/Files/RuntimeFolder.h"

#include "Platform/Linux/Files/ErrnoFailure.h"

#include <cerrno>

#include <unistd.h>

namespace Quillmere {

namespace {

FilePath sessionFolderOfThisUser()
{
    const FilePath folder(qgetenv("XDG_RUNTIME_DIR"));
    // Root may be without a session, or in that of whoever became root.
    return ::geteuid() == 0 && !seeThatItIsOurs(folder) ? FilePath("/run") : folder;
}

} // namespace

RuntimeFolder::RuntimeFolder(FilePath sessionFolder)
    : m_sessionFolder(std::move(sessionFolder))
    , m_path(m_sessionFolder.appending("quillmere"))
{
}

RuntimeFolder RuntimeFolder::ofThisUser()
{
    return RuntimeFolder(sessionFolderOfThisUser());
}

Result<void> RuntimeFolder::check() const
{
    const Result<void> session = seeThatItIsOurs(m_sessionFolder);
    return session ? seeThatItIsOurs(m_path) : session;
}

Result<void> RuntimeFolder::prepare() const
{
    const Result<void> session = seeThatItIsOurs(m_sessionFolder);
    return session ? makeOurs(m_path) : session;
}

bool isClosedToOthers(const struct stat &status)
{
    return status.st_uid == ::geteuid() && (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

Result<void> seeThatItIsOurs(const FilePath &folder)
{
    struct stat status = {};
    if (!folder.bytes().startsWith('/') || ::lstat(folder.bytes().constData(), &status) != 0)
        return Failure{Failure::Kind::NotFound, folder, u"There is no folder of the session."_qs};
    if (!S_ISDIR(status.st_mode) || !isClosedToOthers(status))
        return Failure{Failure::Kind::Protected, folder, u"Others than the user may write there."_qs};
    return {};
}

Result<void> makeOurs(const FilePath &folder)
{
    if (::mkdir(folder.bytes().constData(), S_IRWXU) != 0 && errno != EEXIST)
        return failureFromErrno(errno, folder);
    return seeThatItIsOurs(folder);
}

} // namespace Quillmere
