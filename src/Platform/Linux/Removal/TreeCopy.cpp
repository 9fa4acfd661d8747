#include "Platform/Linux/Removal/TreeCopy.h"

#include "Platform/Linux/Files/DiskSteps.h"
#include "Platform/Linux/Files/ErrnoFailure.h"
#include "Platform/Linux/Files/FileMetadata.h"
#include "Platform/Linux/Files/FolderNames.h"
#include "Platform/Linux/Files/OpenAt.h"
#include "Platform/Linux/Removal/FileCopy.h"
#include "Platform/Linux/Removal/FolderStack.h"

#include <cerrno>
#include <optional>

#include <fcntl.h>

namespace Quillmere {

namespace {

constexpr mode_t whileCopying = 0700;

/// Walks down the source and builds the same folders on the other side, both with a bounded number of descriptors.
class Copying
{
public:
    Copying(int from, int to, FilePath location, FilePath target)
        : m_from(from)
        , m_to(to)
        , m_location(std::move(location))
        , m_target(std::move(target))
    {
    }

    Result<CopiedEntries> run(const QByteArray &name, const QByteArray &newName)
    {
        int error = copyEntry(name, newName);
        while (error == 0 && !m_frames.empty()) {
            Frame &frame = m_frames.back();
            if (frame.next == frame.names.size()) {
                error = leave();
                continue;
            }
            const QByteArray child = frame.names.at(frame.next++);
            error = copyEntry(child, child);
        }
        if (error != 0)
            return failure(error);
        return std::move(m_copied);
    }

private:
    struct Frame
    {
        QByteArray name;
        struct stat status;
        QList<QByteArray> names;
        qsizetype next = 0;
    };

    int copyEntry(const QByteArray &name, const QByteArray &newName)
    {
        DiskSteps::take();
        m_current = name;
        struct stat status = {};
        if (::fstatat(m_from.current(), name.constData(), &status, AT_SYMLINK_NOFOLLOW) != 0)
            return errno;
        if (S_ISDIR(status.st_mode))
            return enter(name, newName);
        if (S_ISREG(status.st_mode))
            return copyFile(name, newName);
        if (const int error = copySpecial(m_from.current(), name, m_to.current(), newName, status))
            return ofTarget(error);
        m_copied.add(status);
        return 0;
    }

    int copyFile(const QByteArray &name, const QByteArray &newName)
    {
        const FileDescriptor source = openAt(m_from.current(), name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK, stayingInside);
        struct stat before = {};
        if (!source.isOpen() || ::fstat(source.number(), &before) != 0)
            return errno;
        if (!S_ISREG(before.st_mode))
            return EBUSY;
        const FileDescriptor target(::openat(m_to.current(), newName.constData(),
                                             O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, whileCopying));
        if (!target.isOpen())
            return ofTarget(errno);
        if (const CopyError error = copyContents(source.number(), target.number(), before.st_size))
            return error.isOfTarget ? ofTarget(error.number) : error.number;
        copyMetadata(source.number(), target.number(), before);
        struct stat after = {};
        if (::fstat(source.number(), &after) != 0)
            return errno;
        m_copied.add(before);
        return isUnchanged(before, after) ? 0 : EBUSY;
    }

    int enter(const QByteArray &name, const QByteArray &newName)
    {
        FileDescriptor source = openAt(m_from.current(), name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW, stayingInside);
        struct stat status = {};
        if (!source.isOpen() || ::fstat(source.number(), &status) != 0)
            return errno;
        if (::mkdirat(m_to.current(), newName.constData(), whileCopying) != 0)
            return ofTarget(errno);
        FileDescriptor target = openAt(m_to.current(), newName, O_RDONLY | O_DIRECTORY | O_NOFOLLOW, stayingInside);
        if (!target.isOpen())
            return ofTarget(errno);
        std::optional<QList<QByteArray>> names = namesIn(source.number());
        if (!names)
            return errno;
        m_from.enter(std::move(source));
        m_to.enter(std::move(target));
        m_frames.push_back({name, status, std::move(*names), 0});
        return 0;
    }

    int leave()
    {
        // Last of all: rights may forbid what had to be done before, and new entries change the times.
        const FileDescriptor source(::fcntl(m_from.current(), F_DUPFD_CLOEXEC, 0));
        const FileDescriptor target(::fcntl(m_to.current(), F_DUPFD_CLOEXEC, 0));
        int error = m_from.leave();
        if (error == 0)
            error = m_to.leave();
        copyMetadata(source.number(), target.number(), m_frames.back().status);
        m_frames.pop_back();
        return error;
    }

    /// The last error of a run was that of the copy and not of what is copied.
    int ofTarget(int error)
    {
        m_isOfTarget = true;
        return error;
    }

    /// Of the entry under way.
    FilePath path() const
    {
        QByteArray names;
        for (const Frame &frame : m_frames)
            names += frame.name + '/';
        names += m_current;
        if (!m_isOfTarget)
            return m_location.appending(names).standardized();
        // The copy has a name of its own.
        const qsizetype slash = names.indexOf('/');
        return slash < 0 ? m_target : m_target.appending(names.sliced(slash + 1)).standardized();
    }

    Failure failure(int error) const
    {
        const FilePath path = this->path();
        if (error == EXDEV)
            return {Failure::Kind::NotSupported, path, u"Another file system is mounted here"_qs};
        if (error == ESTALE)
            return {Failure::Kind::Busy, path, u"The folder was moved elsewhere meanwhile"_qs};
        return failureFromErrno(error, path);
    }

    FolderStack m_from;
    FolderStack m_to;
    FilePath m_location; ///< The folder that the item is in.
    FilePath m_target; ///< The copy.
    QByteArray m_current;
    bool m_isOfTarget = false;
    std::vector<Frame> m_frames;
    CopiedEntries m_copied;
};

} // namespace

Result<CopiedEntries> copyTree(const ItemPlace &place, int folder, const QByteArray &name, const FilePath &target)
{
    return Copying(place.folder.number(), folder, place.path.deletingLastPathComponent(), target).run(place.name, name);
}

} // namespace Quillmere
