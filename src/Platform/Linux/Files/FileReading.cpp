#include "Platform/Linux/Files/FileReading.h"

#include "Platform/Linux/Files/ErrnoFailure.h"
#include "Platform/Linux/Files/ItemPlace.h"
#include "Platform/Linux/Files/OpenAt.h"

#include <cerrno>
#include <limits>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Quillmere {

namespace {

constexpr qsizetype smallestRead = 64 * 1024;
// Without O_NONBLOCK, opening a pipe would wait for somebody to write into it.
constexpr int flagsForReading = O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;

/// @p ofOthers is what that is which is no regular file.
Result<QByteArray> readOpened(const FileDescriptor &file, const FilePath &path, qsizetype mostBytes,
                              Failure::Kind ofOthers)
{
    struct stat status = {};
    if (!file.isOpen() || ::fstat(file.number(), &status) != 0)
        return failureFromErrno(errno, path);
    if (!S_ISREG(status.st_mode))
        return Failure{ofOthers, path, u"Not a regular file"_qs};
    QByteArray contents;
    for (;;) {
        // The file may grow while it is read.
        if (status.st_size > mostBytes || contents.size() > mostBytes)
            return Failure{Failure::Kind::Malformed, path, u"Too large"_qs};
        const qsizetype filled = contents.size();
        // One byte more than the file says it has finds its end without growing.
        const qsizetype room = qMax<qsizetype>(status.st_size + 1 - filled, smallestRead);
        contents.resize(filled + room);
        const ssize_t got = ::read(file.number(), contents.data() + filled, static_cast<size_t>(room));
        const int error = errno;
        contents.resize(filled + qMax<ssize_t>(got, 0));
        if (got < 0 && error != EINTR)
            return failureFromErrno(error, path);
        if (got == 0)
            return contents;
    }
}

} // namespace

Result<QByteArray> readFile(const FilePath &path)
{
    const Result<ItemPlace> place = ItemPlace::open(path, LinksAbove::Follow);
    if (!place)
        return place.failure();
    const FileDescriptor file = openAt(place.value().folder.number(), place.value().name, flagsForReading);
    return readOpened(file, path, std::numeric_limits<qsizetype>::max(), Failure::Kind::NotSupported);
}

Result<QByteArray> readBounded(const FilePath &path, qsizetype mostBytes)
{
    return readBounded(FileDescriptor(::open(path.bytes().constData(), flagsForReading)), path, mostBytes);
}

Result<QByteArray> readBounded(const FileDescriptor &file, const FilePath &path, qsizetype mostBytes)
{
    return readOpened(file, path, mostBytes, Failure::Kind::Malformed);
}

} // namespace Quillmere
