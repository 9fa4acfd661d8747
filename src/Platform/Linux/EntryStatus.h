#pragma once

#include <QtGlobal>

#include <optional>

#include <sys/stat.h>

namespace Quillmere {

/// What the walks ask of one entry of a folder: the entry itself, and only what the kernel has at hand.
class EntryStatus
{
public:
    /// @p mask are the fields of statx(2) wanted beside kind and blocks. None when it has vanished or cannot be asked.
    [[nodiscard]] static std::optional<EntryStatus> ask(int folder, const char *name, unsigned mask = 0);

    [[nodiscard]] bool isFolder() const { return S_ISDIR(m_status.stx_mode); }
    /// A file can be mounted on a file, and what is mounted is not part of the tree.
    [[nodiscard]] bool isFileOfTree() const;
    [[nodiscard]] qint64 allocatedSize() const;
    [[nodiscard]] const struct statx &fields() const { return m_status; }

private:
    struct statx m_status = {};
};

} // namespace Quillmere
