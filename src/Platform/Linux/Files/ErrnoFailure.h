#pragma once

#include "Values/Failure.h"

namespace Quillmere {

/// What an error number of the kernel means for @p path. EXDEV counts as NotSupported: whoever asked the kernel not to
/// cross a mount point, or can copy instead, looks for it before.
[[nodiscard]] Failure failureFromErrno(int error, const FilePath &path);

} // namespace Quillmere
