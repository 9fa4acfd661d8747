#include "Platform/Linux/Files/WriteAll.h"

#include <cerrno>

#include <unistd.h>

namespace Quillmere {

int writeAll(int file, QByteArrayView contents)
{
    while (!contents.isEmpty()) {
        const ssize_t written = ::write(file, contents.data(), static_cast<size_t>(contents.size()));
        if (written < 0 && errno != EINTR)
            return errno;
        if (written > 0)
            contents = contents.sliced(written);
    }
    return 0;
}

} // namespace Quillmere
