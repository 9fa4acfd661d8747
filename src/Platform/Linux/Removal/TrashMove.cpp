#include "Platform/Linux/Removal/TrashMove.h"

#include "Platform/Linux/Files/ErrnoFailure.h"
#include "Platform/Linux/Files/HeldItem.h"
#include "Platform/Linux/Files/OpenAt.h"

#include <cerrno>
#include <tuple>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Quillmere {

namespace {

/// The kernel moves a folder to another parent only for somebody who may write to the folder itself. One of ours is
/// made writable for that, and stays so in the trash: put back as it was, nobody could restore it either.
int fillMadeMovable(TrashReservation &place, int folder, const QByteArray &name)
{
    const FileDescriptor item = openAt(folder, name, O_PATH | O_DIRECTORY | O_NOFOLLOW);
    struct stat status = {};
    if (!item.isOpen() || ::fstat(item.number(), &status) != 0 || status.st_uid != ::geteuid()
        || (status.st_mode & S_IWUSR) != 0)
        return EACCES;
    const mode_t mode = status.st_mode & 07777;
    if (!changeMode(item.number(), mode | S_IWUSR))
        return EACCES;
    const int error = place.fill(folder, name);
    if (error != 0)
        std::ignore = changeMode(item.number(), mode);
    return error;
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
        if (error == EACCES)
            error = fillMadeMovable(place.value(), folder, name);
        if (error == 0)
            return place;
        if (error != EEXIST)
            return failureFromErrno(error, origin);
        number = place.value().number() + 1;
    }
}

} // namespace Quillmere
