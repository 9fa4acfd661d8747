#pragma once

#include "Platform/ProcessRunner.h"

namespace Quillmere {

/// The command that has the system's password dialog raised and then @p command run with the administrator's rights.
/// Its words arrive unchanged through a shell and the script that holds it.
[[nodiscard]] Command elevated(const Command &command);

} // namespace Quillmere
