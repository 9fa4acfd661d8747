#include "Platform/Linux/Removal/FileCopy.h"

#include "Platform/Linux/Files/DiskSteps.h"
#include "Platform/Linux/Files/HeldItem.h"
#include "Platform/Linux/Files/WriteAll.h"

#include <array>
#include <cerrno>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace Quillmere {

namespace {

constexpr size_t pieceSize = 256 * 1024;

CopyError copyPiece(int source, int target, qint64 from, qint64 to)
{
    std::vector<char> piece(pieceSize);
    if (::lseek(target, from, SEEK_SET) < 0)
        return {errno, true};
    while (from < to) {
        const auto wanted = static_cast<size_t>(qMin<qint64>(to - from, pieceSize));
        const ssize_t got = ::pread(source, piece.data(), wanted, from);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return {errno};
        if (got == 0) // Somebody is cutting the file short.
            return {EBUSY};
        if (const int error = writeAll(target, QByteArrayView(piece.data(), got)))
            return {error, true};
        from += got;
        DiskSteps::take();
    }
    return {};
}

} // namespace

CopyError copyContents(int source, int target, qint64 size)
{
    qint64 position = 0;
    while (position < size) {
        qint64 data = ::lseek(source, position, SEEK_DATA);
        if (data < 0 && errno == ENXIO)
            break;
        if (data < 0) // Not every file system tells its holes.
            data = position;
        qint64 hole = ::lseek(source, data, SEEK_HOLE);
        if (hole < 0)
            hole = size;
        if (const CopyError error = copyPiece(source, target, data, qMin(hole, size)))
            return error;
        position = hole;
    }
    return ::ftruncate(target, size) == 0 ? CopyError() : CopyError{errno, true};
}

bool isUnchanged(const struct stat &before, const struct stat &after)
{
    return before.st_size == after.st_size && before.st_mtim.tv_sec == after.st_mtim.tv_sec
        && before.st_mtim.tv_nsec == after.st_mtim.tv_nsec;
}

int makeLink(const QByteArray &text, int folder, const QByteArray &name, const struct stat &status)
{
    if (::symlinkat(text.constData(), folder, name.constData()) != 0)
        return errno;
    const std::array times = {status.st_atim, status.st_mtim};
    ::utimensat(folder, name.constData(), times.data(), AT_SYMLINK_NOFOLLOW);
    return 0;
}

int copySpecial(int fromFolder, const QByteArray &from, int toFolder, const QByteArray &to, const struct stat &status)
{
    if (S_ISLNK(status.st_mode)) {
        const std::optional<QByteArray> text = textOfLink(fromFolder, from);
        return text ? makeLink(*text, toFolder, to, status) : errno;
    }
    if (::mknodat(toFolder, to.constData(), status.st_mode, status.st_rdev) != 0)
        return errno;
    const std::array times = {status.st_atim, status.st_mtim};
    ::utimensat(toFolder, to.constData(), times.data(), AT_SYMLINK_NOFOLLOW);
    return 0;
}

} // namespace Quillmere
