#pragma once

#include "Platform/Linux/Programs/UserEnvironment.h"
#include "Platform/Linux/Removal/RemovalGuard.h"
#include "Platform/Linux/Removal/TrashFolder.h"

namespace Quillmere {

/// Moves items to the trash of their volume, or to that of the home, in the way of the freedesktop Trash 1.0.
/// Never deletes what it cannot move. Safe to call from any thread.
class TrashCan
{
public:
    explicit TrashCan(UserEnvironment environment);

    /// Answers with the item's location in the trash. A link moves itself. A folder that holds a mount point is Busy.
    [[nodiscard]] Result<FilePath> trash(const FilePath &path) const;

private:
    [[nodiscard]] Result<FilePath> move(const ItemPlace &place, const FileDescriptor &item,
                                        const TrashFolder &trash) const;
    [[nodiscard]] Result<FilePath> copy(const ItemPlace &place, const FileDescriptor &item,
                                        const Result<TrashFolder> &homeTrash) const;

    UserEnvironment m_environment;
    RemovalGuard m_guard;
};

} // namespace Quillmere
