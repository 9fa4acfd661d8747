#include "Tools/DialogTurn.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

namespace Quillmere {

FileDescriptor awaitDialogTurn(const RuntimeFolder &folder)
{
    if (!folder.prepare())
        return {};
    const FilePath path = folder.path().appending("dialog.lock");
    FileDescriptor file(
        ::open(path.bytes().constData(), O_RDONLY | O_CREAT | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR));
    // Unlike a lock of fcntl(2), which is one process's, this one goes with the open file to whoever is handed it.
    while (::flock(file.number(), LOCK_EX) != 0) {
        if (errno != EINTR)
            return {};
    }
    return file;
}

} // namespace Quillmere
