#pragma once

#include "Platform/Linux/Files/FileDescriptor.h"
#include "Platform/Linux/Files/RuntimeFolder.h"

namespace Quillmere {

/// Waits, however long, until nobody else of this user has the system's password dialog up: some desktops refuse a
/// second one meanwhile. The turn lasts for as long as the descriptor is open anywhere, so that it ends with whoever
/// was handed it, however that comes about. There is nothing to be read from it. Nothing open, and at once, where @p
/// folder can hold no such lock.
[[nodiscard]] FileDescriptor awaitDialogTurn(const RuntimeFolder &folder);

} // namespace Quillmere
