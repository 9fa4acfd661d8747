#pragma once

#include "Platform/Linux/ItemPlace.h"

#include <optional>

namespace Quillmere {

/// True when @p descriptor stands for the top of a mount, whatever is mounted, and wherever.
[[nodiscard]] bool isMountRoot(int descriptor);

/// Tells the mounts of the machine apart, two of one file system as well: nothing is renamed from one to the other.
/// Nothing when the descriptor cannot be asked.
[[nodiscard]] std::optional<quint64> mountOf(int descriptor);

/// True when something is mounted below @p folder, which is standardized and free of links.
[[nodiscard]] bool holdsMount(const FilePath &folder);

/// The top folder of the mount that holds an item.
struct VolumeTop
{
    FileDescriptor folder; ///< O_PATH.
    FilePath path;

    [[nodiscard]] static Result<VolumeTop> of(const ItemPlace &place);
};

} // namespace Quillmere
