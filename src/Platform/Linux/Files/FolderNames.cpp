#include "Platform/Linux/Files/FolderNames.h"

#include "Platform/Linux/Files/DirectoryBuffer.h"

#include <cerrno>

namespace Quillmere {

std::optional<QList<QByteArray>> namesIn(int folder)
{
    QList<QByteArray> names;
    DirectoryBuffer buffer;
    while (buffer.read(folder)) {
        for (const dirent64 &entry : buffer) {
            if (!DirectoryBuffer::isDots(entry))
                names.append(entry.d_name);
        }
    }
    return errno == 0 ? std::optional(names) : std::nullopt;
}

} // namespace Quillmere
