#include "Platform/Linux/Files/ItemPlace.h"

#include "Platform/Linux/Files/ErrnoFailure.h"
#include "Platform/Linux/Files/OpenAt.h"

#include <cerrno>
#include <climits>
#include <fcntl.h>

namespace Quillmere {

namespace {

// The kernel takes PATH_MAX bytes at once, the final NUL among them.
constexpr qsizetype longestPart = PATH_MAX - 1;

QByteArray withoutLeadingSlashes(const QByteArray &bytes)
{
    qsizetype start = 0;
    while (start < bytes.size() && bytes.at(start) == '/')
        ++start;
    return bytes.sliced(start);
}

/// As many whole components as the kernel takes. One that is too long by itself comes whole, for the kernel to refuse.
QByteArray firstPart(const QByteArray &bytes)
{
    if (bytes.size() <= longestPart)
        return bytes;
    const qsizetype slash = bytes.lastIndexOf('/', longestPart - 1);
    return slash > 0 ? bytes.first(slash) : bytes;
}

} // namespace

Result<FileDescriptor> openFolder(const FilePath &folder, LinksAbove links, int access)
{
    // A NUL would end the name early for the kernel, and another folder would be meant.
    if (!folder.bytes().startsWith('/') || folder.bytes().contains('\0'))
        return Failure{Failure::Kind::NotFound, folder, u"Not an absolute location"_qs};
    const quint64 resolve = links == LinksAbove::Refuse ? RESOLVE_NO_SYMLINKS : 0;
    FileDescriptor reached = openAt(AT_FDCWD, "/", O_PATH | O_DIRECTORY);
    QByteArray rest = withoutLeadingSlashes(folder.bytes());
    while (reached.isOpen() && !rest.isEmpty()) {
        const QByteArray part = firstPart(rest);
        reached = openAt(reached.number(), part, O_PATH | O_DIRECTORY, resolve);
        rest = withoutLeadingSlashes(rest.sliced(part.size()));
    }
    if (reached.isOpen() && access != O_PATH)
        reached = openAt(reached.number(), ".", access | O_DIRECTORY);
    if (!reached.isOpen())
        return failureFromErrno(errno, folder);
    return reached;
}

Result<ItemPlace> ItemPlace::open(const FilePath &path, LinksAbove links)
{
    const FilePath place = links == LinksAbove::Refuse ? path.standardized() : path;
    const QByteArray name = place.lastPathComponent();
    if (name.contains('\0'))
        return Failure{Failure::Kind::NotFound, path, u"Not an absolute location"_qs};
    Result<FileDescriptor> folder = openFolder(place.deletingLastPathComponent(), links, O_PATH);
    if (!folder) {
        Failure failure = folder.failure();
        failure.path = path;
        return failure;
    }
    return ItemPlace{std::move(folder).value(), name == "/" ? QByteArray(".") : name, place};
}

} // namespace Quillmere
