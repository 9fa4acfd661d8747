#include "Platform/Linux/Files/FileReplacement.h"

#include "Platform/Linux/Files/ErrnoFailure.h"
#include "Platform/Linux/Files/FileDescriptor.h"
#include "Platform/Linux/Files/FileIdentity.h"
#include "Platform/Linux/Files/FileMetadata.h"
#include "Platform/Linux/Files/ItemPlace.h"
#include "Platform/Linux/Files/OpenAt.h"
#include "Platform/Linux/Files/WriteAll.h"

#include <QCryptographicHash>
#include <QRandomGenerator>

#include <cerrno>
#include <cstdio>
#include <tuple>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

namespace Quillmere {

namespace {

constexpr int mostAttempts = 100;
constexpr qsizetype digits = 16; ///< Of a target, which itself may be as long as a name can be.
constexpr mode_t usualMode = 0666;

/// Opened to be locked against all others. flock(2): a file server gives such a lock only of what is open for writing;
/// elsewhere it is given of what may only be read as well.
FileDescriptor openToLock(const FileDescriptor &folder, const QByteArray &name)
{
    constexpr int flags = O_NOFOLLOW | O_NONBLOCK | O_NOCTTY;
    FileDescriptor file = openAt(folder.number(), name, O_RDWR | flags);
    return file.isOpen() || errno != EACCES ? std::move(file) : openAt(folder.number(), name, O_RDONLY | flags);
}

/// Removes what a program that was killed on the way has left under @p name. A file that is still on its way is locked.
/// False where one is, or where it cannot be told.
bool clearAbandoned(const FileDescriptor &folder, const QByteArray &name)
{
    const FileDescriptor file = openToLock(folder, name);
    if (!file.isOpen())
        return errno == ENOENT;
    struct stat opened = {};
    struct stat standing = {};
    if (::flock(file.number(), LOCK_EX | LOCK_NB) != 0 || ::fstat(file.number(), &opened) != 0
        || !S_ISREG(opened.st_mode))
        return false;
    // Between the two it may have arrived, and another have come to its name.
    if (::fstatat(folder.number(), name.constData(), &standing, AT_SYMLINK_NOFOLLOW) != 0)
        return errno == ENOENT;
    return FileIdentity::of(standing) == FileIdentity::of(opened)
        && ::unlinkat(folder.number(), name.constData(), 0) == 0;
}

/// A file on its way into a folder. Unless it arrives, nothing of it stays.
class Replacement
{
public:
    Replacement(const FileDescriptor &folder, QByteArray target)
        : m_folder(folder)
        , m_target(std::move(target))
    {
    }
    ~Replacement()
    {
        if (!m_name.isEmpty())
            ::unlinkat(m_folder.number(), m_name.constData(), 0);
    }
    Q_DISABLE_COPY_MOVE(Replacement)

    /// True when all of it happened; otherwise errno says why not.
    bool arrive(const QByteArray &contents, std::optional<mode_t> mode)
    {
        return open() && (mode ? setMode(*mode) : keepOrigin()) && write(contents) && moveIntoPlace();
    }

private:
    bool open()
    {
        m_file = FileDescriptor(::openat(m_folder.number(), ".", O_TMPFILE | O_WRONLY | O_CLOEXEC, usualMode));
        if (m_file.isOpen())
            return lock();
        // open(2): file systems without nameless files say EOPNOTSUPP, kernels without them EISDIR or ENOENT.
        if (errno != EOPNOTSUPP && errno != EISDIR && errno != ENOENT)
            return false;
        return named([&](const QByteArray &name) {
            m_file = FileDescriptor(::openat(m_folder.number(), name.constData(),
                                             O_CREAT | O_EXCL | O_NOFOLLOW | O_WRONLY | O_CLOEXEC, usualMode));
            return m_file.isOpen() && lock() && isStillNamed();
        });
    }

    /// So that nobody takes it for abandoned. A file system that knows no locks does without.
    bool lock()
    {
        std::ignore = ::flock(m_file.number(), LOCK_EX);
        return true;
    }

    /// Before it was locked, somebody may have taken it for abandoned. Then the name counts as taken.
    bool isStillNamed()
    {
        struct stat status = {};
        const bool isNamed = ::fstat(m_file.number(), &status) == 0 && status.st_nlink > 0;
        errno = EEXIST;
        return isNamed;
    }

    /// Looks for a name that is free, for as long as @p make finds that it is taken. The first is always the same for
    /// the same target, so that the next replacement finds what was abandoned there; the others are for more that come
    /// at once.
    template<typename Make>
    bool named(const Make &make)
    {
        const QByteArray usual
            = ".quillmere-" + QCryptographicHash::hash(m_target, QCryptographicHash::Sha1).toHex().first(digits);
        QByteArray name = clearAbandoned(m_folder, usual) ? usual : furtherName(usual);
        for (int attempt = 0; attempt < mostAttempts; ++attempt, name = furtherName(usual)) {
            if (make(name)) {
                m_name = name;
                return true;
            }
            if (errno != EEXIST)
                return false;
        }
        return false;
    }

    static QByteArray furtherName(const QByteArray &usual)
    {
        return usual + '-' + QByteArray::number(QRandomGenerator::global()->generate64(), 36);
    }

    bool setMode(mode_t mode) { return ::fchmod(m_file.number(), mode) == 0; }

    /// Owner, extended attributes and rights of the file that stands there, as far as it can be done: a volume may know
    /// none of them, and only the administrator gives files away.
    bool keepOrigin()
    {
        struct stat existing = {};
        const bool isFile = ::fstatat(m_folder.number(), m_target.constData(), &existing, AT_SYMLINK_NOFOLLOW) == 0
            && S_ISREG(existing.st_mode);
        if (!isFile)
            return true;
        const mode_t rights = giveToOwnerOf(existing, m_file.number());
        const FileDescriptor readable
            = openAt(m_folder.number(), m_target, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY);
        if (readable.isOpen())
            copyExtendedAttributes(readable.number(), m_file.number());
        setMode(rights);
        return true;
    }

    bool write(const QByteArray &contents)
    {
        errno = writeAll(m_file.number(), contents);
        return errno == 0 && ::fsync(m_file.number()) == 0;
    }

    bool moveIntoPlace()
    {
        if (m_name.isEmpty() && !giveName())
            return false;
        if (::renameat(m_folder.number(), m_name.constData(), m_folder.number(), m_target.constData()) != 0)
            return false;
        m_name.clear();
        // The file is complete whatever comes now; without this the disk might learn of the new name late.
        const FileDescriptor readable = openAt(m_folder.number(), ".", O_RDONLY | O_DIRECTORY);
        if (readable.isOpen())
            ::fsync(readable.number());
        return true;
    }

    bool giveName()
    {
        const QByteArray link = "/proc/self/fd/" + QByteArray::number(m_file.number());
        return named([&](const QByteArray &name) {
            return ::linkat(AT_FDCWD, link.constData(), m_folder.number(), name.constData(), AT_SYMLINK_FOLLOW) == 0;
        });
    }

    const FileDescriptor &m_folder;
    QByteArray m_target;
    FileDescriptor m_file;
    QByteArray m_name; ///< Where it stands for now; empty while it has no name of its own.
};

} // namespace

Result<void> replaceFile(const FilePath &path, const QByteArray &contents, std::optional<mode_t> mode)
{
    const Result<ItemPlace> place = ItemPlace::open(path, LinksAbove::Follow);
    if (!place)
        return place.failure();
    if (!Replacement(place.value().folder, place.value().name).arrive(contents, mode))
        return failureFromErrno(errno, path);
    return {};
}

} // namespace Quillmere
