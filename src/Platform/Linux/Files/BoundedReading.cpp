#include "Platform/Linux/Files/BoundedReading.h"

#include "Platform/Linux/Files/ErrnoFailure.h"

#include <array>
#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>

namespace Quillmere {

Result<QByteArray> readBounded(const FilePath &path, qsizetype mostBytes)
{
    // Without O_NONBLOCK, opening a pipe would wait for somebody to write into it.
    const FileDescriptor file(::open(path.bytes().constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    return readBounded(file, path, mostBytes);
}

Result<QByteArray> readBounded(const FileDescriptor &file, const FilePath &path, qsizetype mostBytes)
{
    struct stat status = {};
    if (!file.isOpen() || ::fstat(file.number(), &status) != 0)
        return failureFromErrno(errno, path);
    if (!S_ISREG(status.st_mode))
        return Failure{Failure::Kind::Malformed, path, u"Not a regular file"_qs};

    QByteArray contents;
    std::array<char, 65536> block{};
    for (;;) {
        // The file may grow while it is read.
        if (status.st_size > mostBytes || contents.size() > mostBytes)
            return Failure{Failure::Kind::Malformed, path, u"Too large"_qs};
        const ssize_t count = ::read(file.number(), block.data(), block.size());
        if (count == 0)
            return contents;
        if (count > 0)
            contents.append(block.data(), count);
        else if (errno != EINTR)
            return failureFromErrno(errno, path);
    }
}

} // namespace Quillmere
