#include "Platform/Linux/Removal/TrashReservation.h"

#include "Platform/Linux/Files/DiskSteps.h"
#include "Platform/Linux/Files/ErrnoFailure.h"
#include "Platform/Linux/Files/MoveWithoutReplacing.h"
#include "Platform/Linux/Files/WriteAll.h"
#include "Platform/Linux/Removal/TrashInfo.h"

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace Quillmere {

namespace {

constexpr mode_t privateFile = 0600;

} // namespace

Result<TrashReservation> TrashReservation::make(const TrashFolder &trash, const FilePath &origin, int number)
{
    const QByteArray text = TrashInfo{trash.recordedPath(origin), QDateTime::currentDateTime()}.toText();
    for (;; ++number) {
        DiskSteps::take();
        TrashReservation place(trash, nameInTrash(origin.lastPathComponent(), number, trash.longestName), number);
        const int info = ::openat(trash.info.number(), place.infoName().constData(),
                                  O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, privateFile);
        if (info < 0 && errno == EEXIST)
            continue;
        if (info < 0)
            return failureFromErrno(errno, origin);
        place.m_held = true;
        const int written = writeAll(info, text);
        const int closed = ::close(info) == 0 ? 0 : errno;
        if (written != 0 || closed != 0)
            return failureFromErrno(written != 0 ? written : closed, origin);
        return place;
    }
}

TrashReservation::TrashReservation(const TrashFolder &trash, QByteArray name, int number)
    : m_trash(&trash)
    , m_name(std::move(name))
    , m_number(number)
{
}

TrashReservation::TrashReservation(TrashReservation &&other) noexcept
    : m_trash(other.m_trash)
    , m_name(std::move(other.m_name))
    , m_number(other.m_number)
    , m_held(std::exchange(other.m_held, false))
{
}

TrashReservation::~TrashReservation()
{
    if (m_held)
        ::unlinkat(m_trash->info.number(), infoName().constData(), 0);
}

int TrashReservation::fill(int folder, const QByteArray &name)
{
    // Where the file system cannot keep a move from replacing, the info file has reserved the name against every other
    // program that uses the Trash in the common way.
    const int error = moveWithoutReplacing(folder, name, m_trash->files.number(), m_name);
    m_held = error != 0;
    DiskSteps::take();
    return error;
}

int TrashReservation::empty(int folder, const QByteArray &name)
{
    const int error = moveWithoutReplacing(m_trash->files.number(), m_name, folder, name);
    m_held = error == 0;
    return error;
}

} // namespace Quillmere
