#pragma once

#include "Fakes/PretendMachine.h"

namespace Quillmere {

/// Has @p machine start some programs by itself, as after a few years of installing. Nobody but the administrator may
/// change its daemons.
void fillPretendStartup(PretendMachine &machine);

} // namespace Quillmere
