#pragma once

#include "Values/FilePath.h"

#include <sys/types.h>

namespace Quillmere {

/// Makes @p folder and those above it that are not there, each with @p mode. One that cannot be made shows when
/// something is written into it.
void makeFolders(const FilePath &folder, mode_t mode);

} // namespace Quillmere
