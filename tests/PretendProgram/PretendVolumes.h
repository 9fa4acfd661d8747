#pragma once

#include "Fakes/PretendMachine.h"

#include <functional>

namespace Quillmere {

/// Plugs disks of every kind into @p machine, which may be erased, and lets the system's maintenance commands print
/// something.
void fillPretendVolumes(PretendMachine &machine);

/// From now on @p hold is called before each command that needs the administrator, with its path, where that command
/// is awaited.
void holdPretendCommands(PretendMachine &machine, const std::function<void(const QString &launchPath)> &hold);

} // namespace Quillmere
