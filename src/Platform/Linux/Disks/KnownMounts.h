#pragma once

#include "Platform/Linux/Disks/Mount.h"

#include <QList>

namespace Quillmere {

/// mountTable() without reading it again as long as nothing has been mounted or unmounted. Where it cannot be read, the
/// last that was known, until it can. Any thread.
[[nodiscard]] QList<MountEntry> knownMounts();

/// Whether asking @p mount waits for nothing but this machine: its own disks and its memory, and no server or program
/// that may have gone.
[[nodiscard]] bool alwaysAnswers(const MountEntry &mount);

} // namespace Quillmere
