#include "Platform/Linux/Startup/KeptLinks.h"

#include "Platform/Linux/Files/ErrnoFailure.h"
#include "Platform/Linux/Files/FolderNames.h"
#include "Platform/Linux/Files/FolderOpening.h"
#include "Platform/Linux/Files/MoveWithoutReplacing.h"

#include <cerrno>
#include <climits>
#include <tuple>

#include <sys/file.h>
#include <unistd.h>

namespace Quillmere {

namespace {

// Hidden, and not of a unit's type: no manager of units takes it for one.
const QByteArray noteBegins = ".quillmere-";
const QByteArray noteEnds = ".owed";

/// What the link @p name holds. Empty where there is none.
QByteArray linkIn(const FileDescriptor &folder, const QByteArray &name)
{
    QByteArray target(PATH_MAX, '\0');
    const ssize_t length = ::readlinkat(folder.number(), name.constData(), target.data(), PATH_MAX);
    return length > 0 ? target.first(length) : QByteArray();
}

/// The note itself becomes the link, in one step. 0, or an error number.
int giveBack(const FileDescriptor &folder, const QByteArray &note, const QByteArray &name)
{
    const int error = moveWithoutReplacing(folder.number(), note, folder.number(), name);
    if (error != EEXIST)
        return error;
    return ::unlinkat(folder.number(), note.constData(), 0) == 0 ? 0 : errno;
}

} // namespace

Result<void> keepingLink(const FilePath &folder, const QByteArray &name, const std::function<Result<void>()> &work)
{
    const FileDescriptor opened = openFolderForReading(folder, FinalLink::Follow);
    const QByteArray target = opened.isOpen() ? linkIn(opened, name) : QByteArray();
    if (target.isEmpty())
        return work();
    // Until it is closed, nobody else gives back what is owed here. A file system that knows no locks does without.
    std::ignore = ::flock(opened.number(), LOCK_EX);
    const QByteArray note = noteBegins + name + noteEnds;
    ::unlinkat(opened.number(), note.constData(), 0);
    if (::symlinkat(target.constData(), opened.number(), note.constData()) != 0)
        return failureFromErrno(errno, folder.appending(note));
    Result<void> done = work();
    if (const int error = giveBack(opened, note, name); error != 0)
        return failureFromErrno(error, folder.appending(name));
    return done;
}

void giveBackOwedLinks(const FilePath &folder)
{
    const FileDescriptor opened = openFolderForReading(folder, FinalLink::Follow);
    if (!opened.isOpen() || (::flock(opened.number(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK))
        return;
    for (const QByteArray &note : namesIn(opened.number()).value_or(QList<QByteArray>())) {
        const qsizetype length = note.size() - noteBegins.size() - noteEnds.size();
        if (length > 0 && note.startsWith(noteBegins) && note.endsWith(noteEnds) && !linkIn(opened, note).isEmpty())
            std::ignore = giveBack(opened, note, note.sliced(noteBegins.size(), length));
    }
}

} // namespace Quillmere
