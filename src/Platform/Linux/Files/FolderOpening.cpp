#include "Platform/Linux/Files/FolderOpening.h"

#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/resource.h>
#include <sys/syscall.h>

#include <cerrno>
#include <climits>

namespace Quillmere {

namespace {

constexpr int flagsForListing = O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK;

/// Lets the process have as many descriptors as the system allows it.
void raiseDescriptorLimit()
{
    rlimit limit = {};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur == limit.rlim_max)
        return;
    limit.rlim_cur = limit.rlim_max;
    ::setrlimit(RLIMIT_NOFILE, &limit);
}

/// Calls @p open, which answers a descriptor or -1, until it is not merely interrupted.
template<typename Open>
FileDescriptor openWith(const Open &open)
{
    int number = -1;
    do {
        number = open();
    } while (number < 0 && errno == EINTR);
    if (number >= 0 || !lacksDescriptor(errno))
        return FileDescriptor(number);
    raiseDescriptorLimit();
    return FileDescriptor(open());
}

FileDescriptor openRaisingLimit(int parent, const char *path, int flags)
{
    return openWith([=] { return ::openat(parent, path, flags); });
}

/// The bytes of a path that the kernel can be given: a slash at its end would have it follow a final link.
QByteArray kernelPath(const FilePath &path)
{
    QByteArray bytes = path.bytes();
    while (bytes.size() > 1 && bytes.endsWith('/'))
        bytes.chop(1);
    return bytes;
}

/// The kernel takes paths below PATH_MAX only, so what is longer is opened piece by piece, each at most that long.
FileDescriptor openLongPath(const QByteArray &path, int flags)
{
    FileDescriptor above;
    int parent = AT_FDCWD;
    qsizetype start = 0;
    while (path.size() - start >= PATH_MAX) {
        const qsizetype slash = path.lastIndexOf('/', start + PATH_MAX - 1);
        if (slash <= start) {
            errno = ENAMETOOLONG;
            return {};
        }
        above
            = openRaisingLimit(parent, path.sliced(start, slash - start).constData(), O_PATH | O_DIRECTORY | O_CLOEXEC);
        if (!above.isOpen())
            return {};
        parent = above.number();
        start = slash;
        while (path.at(start) == '/')
            ++start;
    }
    return openRaisingLimit(parent, path.constData() + start, flags);
}

} // namespace

FileDescriptor openFolderForReading(const FilePath &folder, FinalLink link)
{
    const QByteArray path = kernelPath(folder);
    if (path.contains('\0')) {
        errno = ENOENT;
        return {};
    }
    return openLongPath(path, link == FinalLink::Refuse ? flagsForListing | O_NOFOLLOW : flagsForListing);
}

FileDescriptor openSubfolder(int parent, const char *name)
{
    open_how how = {};
    how.flags = flagsForListing | O_NOFOLLOW;
    how.resolve = RESOLVE_NO_XDEV;
    return openWith([&] { return static_cast<int>(::syscall(SYS_openat2, parent, name, &how, sizeof how)); });
}

bool lacksDescriptor(int error)
{
    return error == EMFILE || error == ENFILE;
}

} // namespace Quillmere
