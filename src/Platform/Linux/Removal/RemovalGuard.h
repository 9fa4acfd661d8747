#pragma once

#include "Platform/Linux/Files/ItemPlace.h"
#include "Platform/Linux/Programs/UserEnvironment.h"

namespace Quillmere {

/// The last look at an item before it goes: what may never be removed, whoever asks.
class RemovalGuard
{
public:
    explicit RemovalGuard(UserEnvironment environment);

    /// Refuses with Protected: the root, the top folders of the system, a mount point, the home, a trash folder and the
    /// two in it, and whatever holds the home or the home trash. What cannot be looked at is refused as well, with the
    /// reason. @p item is the item as an O_PATH descriptor.
    [[nodiscard]] Result<void> check(const ItemPlace &place, const FileDescriptor &item) const;

private:
    [[nodiscard]] Result<bool> holdsWhatIsOurs(const ItemPlace &place, const FileDescriptor &item) const;
    [[nodiscard]] Result<bool> isPartOfTrash(const ItemPlace &place) const;

    UserEnvironment m_environment;
    FilePath m_trash;
};

} // namespace Quillmere
