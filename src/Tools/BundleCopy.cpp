#include "Tools/BundleCopy.h"

#include "Platform/Linux/Files/ErrnoFailure.h"
#include "Platform/Linux/Files/FileMetadata.h"
#include "Platform/Linux/Files/FolderNames.h"
#include "Platform/Linux/Files/HeldItem.h"
#include "Platform/Linux/Files/OpenAt.h"
#include "Platform/Linux/Removal/FileCopy.h"
#include "Tools/CallerRights.h"

#include <QList>

#include <cerrno>
#include <optional>
#include <vector>

#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace Quillmere {

namespace {

constexpr quint64 stayingInside = RESOLVE_BENEATH | RESOLVE_NO_SYMLINKS | RESOLVE_NO_MAGICLINKS | RESOLVE_NO_XDEV;
constexpr mode_t whileCopying = 0700;
constexpr int deepest = 64;

/// Everybody gets what the owner may do, but writing: the owner of the copy is somebody else.
mode_t modeOfCopy(mode_t mode)
{
    const mode_t granted = mode & (S_IRUSR | S_IXUSR);
    return (mode & S_IRWXU) | granted >> 3 | granted >> 6;
}

/// A text leads inside when it climbs, at its beginning alone, no further than to the top.
bool leadsInside(const QByteArray &link, int depth)
{
    if (link.startsWith('/'))
        return false;
    bool climbs = true;
    for (const QByteArray &part : link.split('/')) {
        if (part == ".." && (!climbs || --depth < 0))
            return false;
        climbs = climbs && (part == ".." || part == "." || part.isEmpty());
    }
    return true;
}

class Copying
{
public:
    explicit Copying(const Caller &caller)
        : m_caller(caller)
    {
    }

    Result<void> copyFolder(int source, const FilePath &path, int folder, const QByteArray &name, int depth) const
    {
        if (depth > deepest)
            return Failure{Failure::Kind::NotSupported, path, u"Its folders lie too deep in one another"_qs};
        struct stat status = {};
        if (::fstat(source, &status) != 0 || ::mkdirat(folder, name.constData(), whileCopying) != 0)
            return failureFromErrno(errno, path);
        const FileDescriptor target = openAt(folder, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW, stayingInside);
        if (!target.isOpen())
            return failureFromErrno(errno, path);
        const std::optional<QList<QByteArray>> names = namesIn(source);
        if (!names)
            return failureFromErrno(errno, path);
        for (const QByteArray &child : *names) {
            if (Result<void> copied = copyEntry(source, path, target.number(), child, depth); !copied)
                return copied;
        }
        // Last of all: rights may forbid what had to be done before, and new entries change the times.
        return finish(source, status, target.number(), path);
    }

private:
    Result<void> copyEntry(int source, const FilePath &above, int target, const QByteArray &name, int depth) const
    {
        const FilePath path = above.appending(name);
        const FileDescriptor item = open(source, name, O_PATH | O_NOFOLLOW);
        struct stat status = {};
        if (!item.isOpen() || ::fstat(item.number(), &status) != 0)
            return failure(path);
        if (S_ISLNK(status.st_mode))
            return copyLink(item.number(), status, path, target, name, depth);
        if (!S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode))
            return Failure{Failure::Kind::NotSupported, path, u"It is neither a file nor a folder nor a link"_qs};
        const int kind = S_ISDIR(status.st_mode) ? O_DIRECTORY : 0;
        const FileDescriptor opened = open(source, name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | kind);
        if (!opened.isOpen())
            return failure(path);
        if (S_ISDIR(status.st_mode))
            return copyFolder(opened.number(), path, target, name, depth + 1);
        return copyFile(opened.number(), path, target, name);
    }

    Result<void> copyFile(int source, const FilePath &path, int folder, const QByteArray &name) const
    {
        struct stat before = {};
        if (::fstat(source, &before) != 0)
            return failureFromErrno(errno, path);
        if (!S_ISREG(before.st_mode))
            return failureFromErrno(EBUSY, path);
        const FileDescriptor target(
            ::openat(folder, name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, whileCopying));
        if (!target.isOpen())
            return failureFromErrno(errno, path);
        if (const CopyError error = copyContents(source, target.number(), before.st_size))
            return failureFromErrno(error.number, path);
        struct stat after = {};
        if (::fstat(source, &after) != 0)
            return failureFromErrno(errno, path);
        if (!isUnchanged(before, after))
            return failureFromErrno(EBUSY, path);
        return finish(source, before, target.number(), path);
    }

    static Result<void> copyLink(int link, const struct stat &status, const FilePath &path, int folder,
                                 const QByteArray &name, int depth)
    {
        const std::optional<QByteArray> text = textOfLink(link, "");
        if (!text)
            return failureFromErrno(errno, path);
        if (!leadsInside(*text, depth))
            return Failure{Failure::Kind::LinkInPath, path, u"It leads out of the bundle"_qs};
        if (const int error = makeLink(*text, folder, name, status))
            return failureFromErrno(error, path);
        return {};
    }

    Result<void> finish(int source, const struct stat &status, int target, const FilePath &path) const
    {
        copyAttributes(source, target);
        if (::fchmod(target, modeOfCopy(status.st_mode)) != 0)
            return failureFromErrno(errno, path);
        copyTimes(target, status);
        return {};
    }

    /// Only those of users: the others would give the copy rights, or give rights to it.
    void copyAttributes(int source, int target) const
    {
        copyExtendedAttributes(source, target, [&](const char *name, std::vector<char> &value) -> ssize_t {
            if (!QByteArrayView(name).startsWith("user."))
                return -1;
            const CallerRights rights(m_caller);
            return ::fgetxattr(source, name, value.data(), value.size());
        });
    }

    FileDescriptor open(int folder, const QByteArray &name, int flags) const
    {
        const CallerRights rights(m_caller);
        FileDescriptor opened = openAt(folder, name, flags, stayingInside);
        m_error = errno;
        return opened;
    }

    Failure failure(const FilePath &path) const
    {
        if (m_error == EXDEV)
            return {Failure::Kind::NotSupported, path, u"Another file system is mounted here"_qs};
        return failureFromErrno(m_error, path);
    }

    const Caller &m_caller;
    mutable int m_error = 0; ///< Of the last open; giving rights back asks the kernel as well.
};

} // namespace

Result<void> copyBundle(int source, const FilePath &location, const Caller &caller, int folder, const QByteArray &name)
{
    return Copying(caller).copyFolder(source, location, folder, name, 0);
}

} // namespace Quillmere
