#pragma once

#include "Platform/Linux/Disks/DiskService.h"

#include <functional>

namespace Quillmere {

/// Unmounts the volume @p number wherever it is mounted; @p unmounted is told of each place. Nothing that is in use is
/// forced, and whoever mounts it again and again is not waited for: then it fails with Busy, or as DiskService says.
[[nodiscard]] Result<void> unmountEverywhere(const DiskService &service, quint64 number,
                                             const std::function<void(const FilePath &place)> &unmounted = {});

} // namespace Quillmere
