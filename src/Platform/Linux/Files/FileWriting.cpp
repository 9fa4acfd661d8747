#include "Platform/Linux/Files/FileWriting.h"

#include "Platform/Linux/Files/ErrnoFailure.h"
#include "Platform/Linux/Files/ItemPlace.h"
#include "Platform/Linux/Files/WriteAll.h"

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace Quillmere {

namespace {

constexpr mode_t everybody = 0666;

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

} // namespace Quillmere
