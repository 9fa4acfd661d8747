#pragma once

#include "Values/FilePath.h"

#include <functional>
#include <optional>

namespace Quillmere {

/// Whether a way may lead into what is mounted at @p mountPoint.
using MayEnter = std::function<bool(const FilePath &mountPoint)>;

/// The location of what @p path leads to, free of links and of "." and ".."; nothing when a component is missing or may
/// not be passed, or when more than 32 links follow one another. Nothing is asked of a mount that @p mayEnter keeps out
/// of: the rest of the path is taken as written there. Without it every mount is entered.
[[nodiscard]] std::optional<FilePath> resolveLinks(const FilePath &path, const MayEnter &mayEnter = {});

} // namespace Quillmere
