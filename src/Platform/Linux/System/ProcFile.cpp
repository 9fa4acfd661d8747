#include "Platform/Linux/System/ProcFile.h"

#include "Platform/Linux/Files/FileDescriptor.h"

#include <cerrno>

#include <fcntl.h>

namespace Quillmere {

namespace {

// Nearly every such file fits, so that one call that reads and one that finds the end are all.
constexpr qsizetype roomForMost = 4096;

} // namespace

std::optional<QByteArray> readProcFile(int folder, const char *name)
{
    const FileDescriptor file(::openat(folder, name, O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
    if (!file.isOpen())
        return std::nullopt;
    QByteArray contents;
    qsizetype filled = 0;
    for (;;) {
        if (contents.size() - filled < roomForMost / 2)
            contents.resize(contents.isEmpty() ? roomForMost : contents.size() * 2);
        const ssize_t got
            = ::read(file.number(), contents.data() + filled, static_cast<size_t>(contents.size() - filled));
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return std::nullopt;
        if (got == 0)
            break;
        filled += got;
    }
    contents.truncate(filled);
    return contents;
}

} // namespace Quillmere
