#include "Tools/HolderLock.h"

#include "Platform/Linux/Files/ErrnoFailure.h"
#include "Platform/Linux/Files/RuntimeFolder.h"

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace Quillmere {

namespace {

constexpr const char *fileName = "keepawake.pid";

struct flock wholeFile()
{
    struct flock lock
    {
    };
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    return lock;
}

/// 0 where nobody has the lock, -1 with errno set where the kernel does not say.
pid_t ownerOfLock(int file)
{
    struct flock lock = wholeFile();
    if (::fcntl(file, F_GETLK, &lock) != 0)
        return -1;
    if (lock.l_type == F_UNLCK)
        return 0;
    // fcntl(2) knows no number for a process of another PID namespace.
    errno = ESRCH;
    return lock.l_pid > 0 ? lock.l_pid : -1;
}

Result<FileDescriptor> openRunFolder(const FilePath &path)
{
    if (::mkdir(path.bytes().constData(), S_IRWXU) != 0 && errno != EEXIST)
        return failureFromErrno(errno, path);
    FileDescriptor folder(::open(path.bytes().constData(), O_DIRECTORY | O_NOFOLLOW | O_RDONLY | O_CLOEXEC));
    struct stat status
    {
    };
    if (!folder.isOpen() || ::fstat(folder.number(), &status) != 0)
        return failureFromErrno(errno, path);
    if (!isClosedToOthers(status))
        return Failure{Failure::Kind::Protected, path, u"Others may write there."_qs};
    return folder;
}

} // namespace

HolderLock::HolderLock(FileDescriptor file, FilePath path)
    : m_file(std::move(file))
    , m_path(std::move(path))
{
}

Result<HolderLock> HolderLock::open(const FilePath &runFolder)
{
    const Result<FileDescriptor> folder = openRunFolder(runFolder);
    if (!folder)
        return folder.failure();
    const FilePath path = runFolder.appending(fileName);
    FileDescriptor file(
        ::openat(folder.value().number(), fileName, O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!file.isOpen())
        return failureFromErrno(errno, path);
    return HolderLock(std::move(file), path);
}

Result<void> HolderLock::take() const
{
    struct flock lock = wholeFile();
    if (::fcntl(m_file.number(), F_SETLK, &lock) != 0) {
        const bool taken = errno == EAGAIN || errno == EACCES;
        return taken ? Failure{Failure::Kind::AlreadyExists, m_path, qt_error_string(errno)}
                     : failureFromErrno(errno, m_path);
    }
    const QByteArray text = QByteArray::number(::getpid()) + '\n';
    const bool written = ::ftruncate(m_file.number(), 0) == 0
        && ::pwrite(m_file.number(), text.constData(), static_cast<size_t>(text.size()), 0) == text.size();
    return written ? Result<void>() : failureFromErrno(errno, m_path);
}

Result<std::optional<FileDescriptor>> HolderLock::holder() const
{
    for (;;) {
        const pid_t owner = ownerOfLock(m_file.number());
        if (owner == 0)
            return std::optional<FileDescriptor>();
        if (owner < 0)
            return failureFromErrno(errno, m_path);
        FileDescriptor process(static_cast<int>(::syscall(SYS_pidfd_open, owner, 0)));
        if (!process.isOpen() && errno != ESRCH)
            return failureFromErrno(errno, m_path);
        // The number may have passed to another process between the two calls. Who still has the lock is the one.
        if (process.isOpen() && ownerOfLock(m_file.number()) == owner)
            return std::optional(std::move(process));
    }
}

} // namespace Quillmere
