#include "Platform/Linux/Files/FolderNames.h"

#include <cerrno>

#include <dirent.h>
#include <fcntl.h>

namespace Quillmere {

std::optional<QList<QByteArray>> namesIn(int folder)
{
    DIR *listing = ::fdopendir(::fcntl(folder, F_DUPFD_CLOEXEC, 0));
    if (!listing)
        return std::nullopt;
    QList<QByteArray> names;
    errno = 0;
    while (const dirent64 *entry = ::readdir64(listing)) {
        const QByteArray name = entry->d_name;
        if (name != "." && name != "..")
            names.append(name);
    }
    const int error = errno;
    ::closedir(listing);
    errno = error;
    return error == 0 ? std::optional(names) : std::nullopt;
}

} // namespace Quillmere
