#include "Platform/Linux/Network/AnonymousFile.h"

#include <cerrno>

#include <sys/mman.h>
#include <unistd.h>

namespace Quillmere {

AnonymousFile::AnonymousFile()
    : m_file(::memfd_create("quillmere-download", MFD_CLOEXEC))
{
}

bool AnonymousFile::append(QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const ssize_t written = ::write(m_file.number(), bytes.data(), static_cast<size_t>(bytes.size()));
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        bytes = bytes.sliced(written);
    }
    return m_file.isOpen();
}

QUrl AnonymousFile::location() const
{
    // proc(5): opening it opens the file anew, at its beginning.
    return QUrl::fromLocalFile(u"/proc/self/fd/"_qs + QString::number(m_file.number()));
}

} // namespace Quillmere
