#include "Platform/Linux/TrashMove.h"

#include "Platform/Linux/ErrnoFailure.h"
#include "Platform/Linux/OpenAt.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Quillmere {

namespace {

/// The kernel moves a folder to another parent only for somebody who may write to the folder itself. One of ours is
/// made writable, and stays so: put back as it was, nobody could restore it from the trash either.
bool makeMovable(int folder, const QByteArray &name)
{
    const FileDescriptor item = openAt(folder, name, O_PATH | O_DIRECTORY | O_NOFOLLOW);
    struct stat status = {};
    if (!item.isOpen() || ::fstat(item.number(), &status) != 0 || status.st_uid != ::geteuid()
        || (status.st_mode & S_IWUSR) != 0)
        return false;
    const QByteArray door = "/proc/self/fd/" + QByteArray::number(item.number());
    return ::chmod(door.constData(), (status.st_mode & 07777) | S_IWUSR) == 0;
}

} // namespace

Result<TrashReservation> moveIntoTrash(int folder, const QByteArray &name, const FilePath &origin,
                                       const TrashFolder &trash)
{
    for (int number = 1;;) {
        Result<TrashReservation> place = TrashReservation::make(trash, origin, number);
        if (!place)
            return place;
        int error = place.value().fill(folder, name);
        if (error == EACCES && makeMovable(folder, name))
            error = place.value().fill(folder, name);
        if (error == 0)
            return place;
        if (error != EEXIST)
            return failureFromErrno(error, origin);
        number = place.value().number() + 1;
    }
}

} // namespace Quillmere
