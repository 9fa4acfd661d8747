#pragma once

#include "Fakes/PretendMachine.h"

namespace Quillmere {

/// Plugs disks of every kind into @p machine, which may be erased, and lets the system's maintenance commands print
/// something.
void fillPretendVolumes(PretendMachine &machine);

} // namespace Quillmere
