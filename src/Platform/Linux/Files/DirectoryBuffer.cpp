#include "Platform/Linux/Files/DirectoryBuffer.h"

#include "Platform/Linux/Files/DiskSteps.h"

#include <cerrno>

namespace Quillmere {

namespace {

// From 32 to 256 KiB the size makes no difference, and from 1 MiB on it harms.
constexpr size_t capacity = 64 * 1024;

} // namespace

bool DirectoryBuffer::read(int folder)
{
    if (!m_bytes)
        m_bytes = std::make_unique_for_overwrite<char[]>(capacity);
    DiskSteps::take();
    ssize_t size = -1;
    do {
        errno = 0;
        size = ::getdents64(folder, m_bytes.get(), capacity);
    } while (size < 0 && errno == EINTR);
    m_size = size > 0 ? static_cast<size_t>(size) : 0;
    return size > 0;
}

} // namespace Quillmere
