#pragma once

#include "Platform/Linux/Walk/TreeWalk.h"

namespace Quillmere {

/// What a walk finds in @p folder; -1 of each where it failed.
[[nodiscard]] inline TreeSize measure(const FilePath &folder)
{
    return measureTree(folder, {}).valueOr({-1, -1});
}

} // namespace Quillmere
