#pragma once

#include "Values/FilePath.h"
#include "Values/Result.h"

namespace Quillmere {

/// The folder of the user we run as for what need not outlive the session. Need not exist.
[[nodiscard]] FilePath runtimeFolderOfThisUser();

/// Fails for a folder that is not there, another user's, or one that others may write into.
[[nodiscard]] Result<void> seeThatItIsOurs(const FilePath &folder);

} // namespace Quillmere
