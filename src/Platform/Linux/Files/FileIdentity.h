#pragma once

#include <sys/stat.h>

namespace Quillmere {

/// Tells one item of the machine from every other, whatever it is called.
struct FileIdentity
{
    dev_t device = 0;
    ino_t inode = 0;

    bool operator==(const FileIdentity &) const = default;

    [[nodiscard]] static FileIdentity of(const struct stat &status) { return {status.st_dev, status.st_ino}; }
};

} // namespace Quillmere
