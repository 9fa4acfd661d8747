#include "Platform/Linux/FileReplacement.h"

#include "Platform/Linux/ErrnoFailure.h"
#include "Platform/Linux/FileDescriptor.h"

#include <QRandomGenerator>

#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <sys/stat.h>

namespace Quillmere {

namespace {

constexpr int mostAttempts = 100;

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

    /// True when all three happened; otherwise errno says why not.
    bool arrive(const QByteArray &contents, mode_t mode) { return open(mode) && write(contents) && moveIntoPlace(); }

private:
    bool open(mode_t mode)
    {
        m_file = FileDescriptor(::openat(m_folder.number(), ".", O_TMPFILE | O_WRONLY | O_CLOEXEC, mode));
        if (m_file.isOpen())
            return true;
        // open(2): file systems without nameless files say EOPNOTSUPP, kernels without them EISDIR or ENOENT.
        if (errno != EOPNOTSUPP && errno != EISDIR && errno != ENOENT)
            return false;
        return named([&](const QByteArray &name) {
            m_file = FileDescriptor(::openat(m_folder.number(), name.constData(),
                                             O_CREAT | O_EXCL | O_NOFOLLOW | O_WRONLY | O_CLOEXEC, mode));
            return m_file.isOpen();
        });
    }

    /// Looks for a name that is free, for as long as @p make finds that it is taken.
    template<typename Make>
    bool named(const Make &make)
    {
        for (int attempt = 0; attempt < mostAttempts; ++attempt) {
            const QByteArray name
                = '.' + m_target + '.' + QByteArray::number(QRandomGenerator::global()->generate(), 36);
            if (make(name)) {
                m_name = name;
                return true;
            }
            if (errno != EEXIST)
                return false;
        }
        return false;
    }

    bool write(const QByteArray &contents)
    {
        qsizetype written = 0;
        while (written < contents.size()) {
            const ssize_t count = ::write(m_file.number(), contents.constData() + written,
                                          static_cast<std::size_t>(contents.size() - written));
            if (count < 0 && errno != EINTR)
                return false;
            written += std::max<ssize_t>(count, 0);
        }
        return ::fsync(m_file.number()) == 0;
    }

    bool moveIntoPlace()
    {
        if (m_name.isEmpty() && !giveName())
            return false;
        if (::renameat(m_folder.number(), m_name.constData(), m_folder.number(), m_target.constData()) != 0)
            return false;
        m_name.clear();
        return ::fsync(m_folder.number()) == 0;
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

Result<void> replaceFile(const FilePath &path, const QByteArray &contents, mode_t mode)
{
    const QByteArray folderPath = path.deletingLastPathComponent().bytes();
    const FileDescriptor folder(::open(folderPath.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder.isOpen() || !Replacement(folder, path.lastPathComponent()).arrive(contents, mode))
        return failureFromErrno(errno, path);
    return {};
}

} // namespace Quillmere
