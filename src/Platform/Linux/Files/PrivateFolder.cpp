#include "Platform/Linux/Files/PrivateFolder.h"

#include "Platform/Linux/Files/ErrnoFailure.h"
#include "Platform/Linux/Files/OpenAt.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>

namespace Quillmere {

Result<FileDescriptor> openOrMakePrivateFolder(int parent, const QByteArray &name, FinalLink link, const FilePath &path)
{
    const int flags = O_PATH | O_DIRECTORY | (link == FinalLink::Refuse ? O_NOFOLLOW : 0);
    FileDescriptor folder = openAt(parent, name, flags);
    if (!folder.isOpen() && errno == ENOENT) {
        if (::mkdirat(parent, name.constData(), S_IRWXU) != 0 && errno != EEXIST)
            return failureFromErrno(errno, path);
        folder = openAt(parent, name, flags);
    }
    if (!folder.isOpen())
        return failureFromErrno(errno, path);
    return folder;
}

} // namespace Quillmere
