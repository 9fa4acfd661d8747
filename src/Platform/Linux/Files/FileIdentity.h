#pragma once

#include <optional>

#include <sys/stat.h>

namespace Quillmere {

/// Tells one item of the machine from every other, whatever it is called.
struct FileIdentity
{
    dev_t device = 0;
    ino_t inode = 0;

    bool operator==(const FileIdentity &) const = default;

    [[nodiscard]] static FileIdentity of(const struct stat &status) { return {status.st_dev, status.st_ino}; }
    /// Of the item that @p descriptor stands for; nothing when it cannot be asked, with the reason in errno.
    [[nodiscard]] static std::optional<FileIdentity> of(int descriptor)
    {
        struct stat status = {};
        return ::fstat(descriptor, &status) == 0 ? std::optional(of(status)) : std::nullopt;
    }
};

} // namespace Quillmere
