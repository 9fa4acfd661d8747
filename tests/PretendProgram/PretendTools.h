#pragma once

#include "Fakes/PretendMachine.h"

namespace Quillmere {

/// Installs development tools on @p machine and lets them have worked for some years.
void fillPretendTools(PretendMachine &machine);

} // namespace Quillmere
