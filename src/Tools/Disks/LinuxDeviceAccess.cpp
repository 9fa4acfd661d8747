#include "Tools/Disks/LinuxDeviceAccess.h"

#include "Platform/Linux/Disks/BlockDevices.h"
#include "Platform/Linux/Files/ErrnoFailure.h"
#include "Platform/Linux/Files/FileDescriptor.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <tuple>

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Quillmere {

namespace {

#ifndef BLKGETDISKSEQ
// linux/fs.h has it since Linux 5.15.
#define BLKGETDISKSEQ _IOR(0x12, 128, __u64)
#endif

// What O_DIRECT asks of memory never exceeds a page of this size on a disk.
constexpr size_t alignment = 4096;
constexpr size_t mostAtOnce = 4 << 20;

struct Free
{
    void operator()(char *memory) const { std::free(memory); }
};

class LinuxDevice final : public OpenDevice
{
public:
    LinuxDevice(FileDescriptor file, FilePath path)
        : m_file(std::move(file))
        , m_path(std::move(path))
    {
    }

    [[nodiscard]] Result<DeviceFacts> facts() const override
    {
        struct stat status = {};
        quint64 size = 0;
        __u64 sequence = 0;
        int readOnly = 1;
        if (::fstat(m_file.number(), &status) != 0 || ::ioctl(m_file.number(), BLKGETSIZE64, &size) != 0
            || ::ioctl(m_file.number(), BLKROGET, &readOnly) != 0)
            return failureFromErrno(errno, m_path);
        if (::ioctl(m_file.number(), BLKGETDISKSEQ, &sequence) != 0)
            sequence = 0;
        return DeviceFacts{status.st_rdev, static_cast<qint64>(size), sequence, readOnly != 0};
    }

    [[nodiscard]] Result<void> writeZeros(qint64 offset, qint64 count) override
    {
        if (!makeBuffer())
            return failureFromErrno(ENOMEM, m_path);
        std::memset(m_buffer.get(), 0, mostAtOnce);
        while (count > 0) {
            const size_t length = std::min(mostAtOnce, static_cast<size_t>(count));
            const ssize_t written = ::pwrite(m_file.number(), m_buffer.get(), length, offset);
            if (written == 0)
                return failureFromErrno(ENOSPC, m_path);
            if (written < 0 && errno != EINTR)
                return failureFromErrno(errno, m_path);
            offset += std::max<ssize_t>(written, 0);
            count -= std::max<ssize_t>(written, 0);
        }
        return {};
    }

    [[nodiscard]] Result<QByteArray> read(qint64 offset, qint64 count) override
    {
        if (!makeBuffer())
            return failureFromErrno(ENOMEM, m_path);
        QByteArray contents;
        while (contents.size() < count) {
            const size_t length = std::min(mostAtOnce, static_cast<size_t>(count - contents.size()));
            const ssize_t got = ::pread(m_file.number(), m_buffer.get(), length, offset + contents.size());
            if (got == 0)
                return failureFromErrno(EIO, m_path);
            if (got < 0 && errno != EINTR)
                return failureFromErrno(errno, m_path);
            contents.append(m_buffer.get(), std::max<ssize_t>(got, 0));
        }
        return contents;
    }

    [[nodiscard]] Result<void> synchronize() override
    {
        return ::fsync(m_file.number()) == 0 ? Result<void>() : failureFromErrno(errno, m_path);
    }

    // Refused by disks that are never divided, and then there is nothing to look for.
    void lookForPartitions() override { std::ignore = ::ioctl(m_file.number(), BLKRRPART); }

private:
    bool makeBuffer()
    {
        if (!m_buffer)
            m_buffer.reset(static_cast<char *>(std::aligned_alloc(alignment, mostAtOnce)));
        return m_buffer != nullptr;
    }

    FileDescriptor m_file;
    FilePath m_path;
    std::unique_ptr<char, Free> m_buffer;
};

} // namespace

Result<std::unique_ptr<OpenDevice>> LinuxDeviceAccess::open(const QByteArray &node, Way way) const
{
    const FilePath path = nodeOf(node);
    // Opening is an act for some devices that are no disks, so that the kind is looked at first.
    const FileDescriptor place(::open(path.bytes().constData(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
    struct stat status = {};
    if (!place.isOpen() || ::fstat(place.number(), &status) != 0)
        return failureFromErrno(errno, path);
    if (!S_ISBLK(status.st_mode))
        return Failure{Failure::Kind::NotSupported, path, u"This is no disk."_qs};
    // open(2): of a block device, O_EXCL is a claim, beside which the kernel lets nothing be mounted.
    const int rights = way == Way::Alone ? O_RDWR | O_EXCL | O_DIRECT : O_RDONLY | O_NONBLOCK;
    const QByteArray same = "/proc/self/fd/" + QByteArray::number(place.number());
    FileDescriptor file(::open(same.constData(), rights | O_CLOEXEC | O_NOCTTY));
    if (!file.isOpen())
        return failureFromErrno(errno, path);
    return std::unique_ptr<OpenDevice>(std::make_unique<LinuxDevice>(std::move(file), path));
}

} // namespace Quillmere
