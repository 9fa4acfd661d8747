#include "Platform/Linux/Files/MoveWithoutReplacing.h"

#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <sys/stat.h>

namespace Quillmere {

int moveWithoutReplacing(int fromFolder, const QByteArray &from, int toFolder, const QByteArray &to)
{
    if (::renameat2(fromFolder, from.constData(), toFolder, to.constData(), RENAME_NOREPLACE) == 0)
        return 0;
    if (errno != EINVAL)
        return errno;
    // Some file systems, NFS among them, know no flags.
    struct stat status = {};
    if (::fstatat(toFolder, to.constData(), &status, AT_SYMLINK_NOFOLLOW) == 0)
        return EEXIST;
    if (errno != ENOENT)
        return errno;
    return ::renameat(fromFolder, from.constData(), toFolder, to.constData()) == 0 ? 0 : errno;
}

} // namespace Quillmere
