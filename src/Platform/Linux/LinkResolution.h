#pragma once

#include "Values/FilePath.h"

#include <optional>

namespace Quillmere {

/// The location of what @p path leads to, free of links and of "." and ".."; nothing when a component is missing or may
/// not be passed, or when more than 32 links follow one another.
[[nodiscard]] std::optional<FilePath> resolveLinks(const FilePath &path);

} // namespace Quillmere
