#include "Platform/Linux/Files/FileMetadata.h"

#include <QByteArray>

#include <array>
#include <climits>

#include <sys/xattr.h>
#include <unistd.h>

namespace Quillmere {

mode_t giveToOwnerOf(const struct stat &status, int target)
{
    if (::fchown(target, status.st_uid, status.st_gid) == 0)
        return status.st_mode & 07777;
    // Without the owner's name on it, the file must not run with its owner's rights.
    const mode_t mode = status.st_mode & 0777;
    if (::fchown(target, static_cast<uid_t>(-1), status.st_gid) == 0)
        return mode;
    // Another group has it now, of which each may do what everybody may.
    return mode & (S_IRWXU | S_IRWXO | (mode & S_IRWXO) << 3);
}

void copyExtendedAttributes(int source, int target)
{
    copyExtendedAttributes(source, target, [source](const char *name, std::vector<char> &value) {
        return ::fgetxattr(source, name, value.data(), value.size());
    });
}

void copyExtendedAttributes(int source, int target, const AttributeReading &read)
{
    std::vector<char> names(XATTR_LIST_MAX);
    const ssize_t length = ::flistxattr(source, names.data(), names.size());
    std::vector<char> value(XATTR_SIZE_MAX);
    for (ssize_t at = 0; at < length;) {
        const char *name = names.data() + at;
        at += static_cast<ssize_t>(qstrlen(name)) + 1;
        const ssize_t size = read(name, value);
        if (size >= 0)
            ::fsetxattr(target, name, value.data(), static_cast<size_t>(size), 0);
    }
}

void copyTimes(int target, const struct stat &status)
{
    const std::array times = {status.st_atim, status.st_mtim};
    ::futimens(target, times.data());
}

void copyMetadata(int source, int target, const struct stat &status)
{
    copyExtendedAttributes(source, target);
    const mode_t mode = giveToOwnerOf(status, target);
    ::fchmod(target, mode);
    copyTimes(target, status);
}

} // namespace Quillmere
