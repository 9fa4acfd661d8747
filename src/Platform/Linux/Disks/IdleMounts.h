#pragma once

#include "Platform/Linux/Disks/Mount.h"

#include <QList>

namespace Quillmere {

/// The folders of the boot loader in @p table that wait for their first touch, or have been left alone for so long that
/// they wait for the next. What will be mounted there cannot be seen before.
[[nodiscard]] QList<FilePath> idleBootFolders(const QList<MountEntry> &table);

/// Touches those, so that the disk they lie on shows in the table from now on. True where there were any: the table is
/// then to be read anew. One whose disk does not answer holds nobody up for more than a moment, and goes on waiting.
[[nodiscard]] bool wakeBootFolders(const QList<MountEntry> &table);

} // namespace Quillmere
