#pragma once

#include "Platform/Machine.h"

namespace Quillmere {

/// The machine that the program really runs on.
[[nodiscard]] Machine makeLinuxMachine();

} // namespace Quillmere
