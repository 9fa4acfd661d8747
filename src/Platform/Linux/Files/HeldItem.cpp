#include "Platform/Linux/Files/HeldItem.h"

#include "Platform/Linux/Files/OpenAt.h"

#include <array>
#include <climits>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Quillmere {

bool isLink(int item)
{
    struct stat status = {};
    return ::fstat(item, &status) == 0 && S_ISLNK(status.st_mode);
}

bool isFolder(int item)
{
    struct stat status = {};
    return ::fstat(item, &status) == 0 && S_ISDIR(status.st_mode);
}

std::optional<QByteArray> textOfLink(int folder, const QByteArray &name)
{
    std::array<char, PATH_MAX> text = {};
    const ssize_t length = ::readlinkat(folder, name.constData(), text.data(), text.size());
    return length < 0 ? std::nullopt : std::optional(QByteArray(text.data(), length));
}

bool changeMode(int item, mode_t mode)
{
    // fchmod(2) does not take an O_PATH descriptor; the kernel's own link to it leads to the same item.
    const QByteArray door = "/proc/self/fd/" + QByteArray::number(item);
    return ::chmod(door.constData(), mode) == 0;
}

std::optional<bool> isAtOrAbove(const FileIdentity &wanted, int folder)
{
    FileDescriptor above;
    std::optional<FileIdentity> below;
    for (int current = folder;; current = above.number()) {
        const std::optional<FileIdentity> identity = FileIdentity::of(current);
        if (!identity)
            return std::nullopt;
        if (identity == wanted)
            return true;
        // The root is its own parent.
        if (identity == below)
            return false;
        below = identity;
        above = openAt(current, "..", O_PATH | O_DIRECTORY);
        if (!above.isOpen())
            return std::nullopt;
    }
}

} // namespace Quillmere
