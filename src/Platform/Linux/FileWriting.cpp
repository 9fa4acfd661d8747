#include "Platform/Linux/FileWriting.h"

#include "Platform/Linux/ErrnoFailure.h"
#include "Platform/Linux/ItemPlace.h"
#include "Platform/Linux/OpenAt.h"
#include "Platform/Linux/Writing.h"

#include <QRandomGenerator>

#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Quillmere {

namespace {

constexpr mode_t everybody = 0666;
constexpr qsizetype smallestRead = 64 * 1024;

/// Closes @p file whatever happens; the first error counts. Some file servers tell of a full disk only here.
int writeAndClose(int file, const QByteArray &contents, bool synchronize)
{
    int error = writeAll(file, contents);
    if (error == 0 && synchronize && ::fsync(file) != 0)
        error = errno;
    if (::close(file) != 0 && error == 0)
        error = errno;
    return error;
}

void keepMode(int folder, const QByteArray &name, int file)
{
    struct stat existing = {};
    if (::fstatat(folder, name.constData(), &existing, AT_SYMLINK_NOFOLLOW) == 0 && S_ISREG(existing.st_mode))
        ::fchmod(file, existing.st_mode & 07777);
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
                              O_WRONLY | O_CREAT | O_TRUNC | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, everybody);
    const int error = file < 0 ? errno : writeAndClose(file, contents, false);
    if (error != 0)
        return failureFromErrno(error, path);
    return {};
}

Result<void> writeAtomically(const FilePath &path, const QByteArray &contents)
{
    const Result<ItemPlace> place = ItemPlace::open(path, LinksAbove::Follow);
    if (!place)
        return place.failure();
    const int folder = place.value().folder.number();
    const QByteArray &name = place.value().name;
    const QByteArray temporary
        = ".quillmere-" + QByteArray::number(QRandomGenerator::global()->generate64(), 36);
    const int file = ::openat(folder, temporary.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                              everybody);
    if (file < 0)
        return failureFromErrno(errno, path);
    keepMode(folder, name, file);
    int error = writeAndClose(file, contents, true);
    if (error == 0 && ::renameat(folder, temporary.constData(), folder, name.constData()) != 0)
        error = errno;
    if (error != 0) {
        ::unlinkat(folder, temporary.constData(), 0);
        return failureFromErrno(error, path);
    }
    // The file is complete whatever comes now; without this the disk might learn of the new name late.
    const FileDescriptor readable = openAt(folder, ".", O_RDONLY | O_DIRECTORY);
    if (readable.isOpen())
        ::fsync(readable.number());
    return {};
}

} // namespace Quillmere
