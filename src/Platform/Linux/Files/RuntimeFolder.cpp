#include "Platform/Linux/Files/RuntimeFolder.h"

#include <sys/stat.h>
#include <unistd.h>

namespace Quillmere {

namespace {

constexpr mode_t writableByOthers = S_IWGRP | S_IWOTH;

} // namespace

FilePath runtimeFolderOfThisUser()
{
    const FilePath folder(qgetenv("XDG_RUNTIME_DIR"));
    // Root may be without a session, or in that of whoever became root.
    return ::geteuid() == 0 && !seeThatItIsOurs(folder) ? FilePath("/run") : folder;
}

Result<void> seeThatItIsOurs(const FilePath &folder)
{
    struct stat status = {};
    if (!folder.bytes().startsWith('/') || ::lstat(folder.bytes().constData(), &status) != 0)
        return Failure{Failure::Kind::NotFound, folder, u"There is no folder of the session."_qs};
    if (!S_ISDIR(status.st_mode) || status.st_uid != ::geteuid() || (status.st_mode & writableByOthers) != 0)
        return Failure{Failure::Kind::Protected, folder, u"Others than the user may write there."_qs};
    return {};
}

} // namespace Quillmere
