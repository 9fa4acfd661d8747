#pragma once

#include "Tools/KeepAwake.h"
#include "Tools/ToolEnd.h"

#include <QStringList>

namespace Quillmere {

/// Switches as root does it.
[[nodiscard]] ToolEnd setSleepDisabled(const KeepAwake &keepAwake, bool disabled);

/// Carries out the command `pmset`, of which there is `-a disablesleep 0` and `-a disablesleep 1`.
[[nodiscard]] ToolEnd runPmset(const QStringList &arguments, const KeepAwake &keepAwake, bool isRoot);

} // namespace Quillmere
