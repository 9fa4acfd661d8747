#pragma once

#include "Platform/Linux/TemporaryHome.h"

namespace Quillmere {

/// Runs `quillmere-trash` in @p home and kills it when it is about to make its system call number @p call, counted
/// from the first that concerns the file system of the item. True when it ended by itself before that.
[[nodiscard]] bool survivesUntilCall(const TemporaryHome &home, const char *verb, const FilePath &path, int call);

/// Runs it undisturbed; true when it says that it succeeded.
[[nodiscard]] bool runToTheEnd(const TemporaryHome &home, const char *verb, const FilePath &path);

} // namespace Quillmere
