#pragma once

#include "Tools/Caller.h"

namespace Quillmere {

/// Gives a new volume to @p owner: of a file system that knows owners, the first folder is root's. Of others nothing is
/// changed. @p type as udisks2 calls it. The volume is not to be mounted.
[[nodiscard]] Result<void> giveVolume(const Caller &owner, const QByteArray &node, const QString &type);

} // namespace Quillmere
