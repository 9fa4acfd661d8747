#include "Platform/Linux/Files/FileWriting.h"

#include "Platform/Linux/Files/ErrnoFailure.h"
#include "Platform/Linux/Files/FileReplacement.h"
#include "Platform/Linux/Files/ItemPlace.h"
#include "Platform/Linux/Files/OpenAt.h"
#include "Platform/Linux/Files/Writing.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Quillmere {

namespace {

constexpr mode_t everybody = 0666;
constexpr qsizetype smallestRead = 64 * 1024;

int reserve(int file, qsizetype size)
{
    if (size == 0 || ::fallocate(file, FALLOC_FL_KEEP_SIZE, 0, size) == 0)
        return 0;
    // fallocate(2): a file system that cannot reserve is written to without.
    return errno == EOPNOTSUPP || errno == ENOSYS ? 0 : errno;
}

/// Closes @p file whatever happens; the first error counts. Some file servers tell of a full disk only here.
/// What was there goes only when there is room for what comes: on a full disk the old contents stay.
int overwriteAndClose(int file, const QByteArray &contents)
{
    int error = reserve(file, contents.size());
    if (error == 0)
        error = writeAll(file, contents);
    if (error == 0 && ::ftruncate(file, contents.size()) != 0)
        error = errno;
    if (::close(file) != 0 && error == 0)
        error = errno;
    return error;
}

} // namespace

Result<QByteArray> readFile(const FilePath &path)
{
    const Result<ItemPlace> place = ItemPlace::open(path, LinksAbove::Follow);
    if (!place)
        return place.failure();
    // O_NONBLOCK: opening a FIFO would wait for whoever writes to it.
    const FileDescriptor file
        = openAt(place.value().folder.number(), place.value().name, O_RDONLY | O_NONBLOCK | O_NOCTTY);
    struct stat status = {};
    if (!file.isOpen() || ::fstat(file.number(), &status) != 0)
        return failureFromErrno(errno, path);
    if (!S_ISREG(status.st_mode))
        return Failure{Failure::Kind::NotSupported, path, u"Not a regular file"_qs};
    QByteArray contents;
    for (;;) {
        const qsizetype filled = contents.size();
        // One byte more than the file says it has finds its end without growing.
        const qsizetype room = qMax<qsizetype>(status.st_size + 1 - filled, smallestRead);
        contents.resize(filled + room);
        const ssize_t got = ::read(file.number(), contents.data() + filled, static_cast<size_t>(room));
        contents.resize(filled + qMax<ssize_t>(got, 0));
        if (got < 0 && errno != EINTR)
            return failureFromErrno(errno, path);
        if (got == 0)
            return contents;
    }
}

Result<void> writeInPlace(const FilePath &path, const QByteArray &contents)
{
    const Result<ItemPlace> place = ItemPlace::open(path, LinksAbove::Follow);
    if (!place)
        return place.failure();
    const int file = ::openat(place.value().folder.number(), place.value().name.constData(),
                              O_WRONLY | O_CREAT | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, everybody);
    const int error = file < 0 ? errno : overwriteAndClose(file, contents);
    if (error != 0)
        return failureFromErrno(error, path);
    return {};
}

Result<void> writeAtomically(const FilePath &path, const QByteArray &contents)
{
    return replaceFile(path, contents);
}

} // namespace Quillmere
