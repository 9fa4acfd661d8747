#pragma once

#include "Tools/AdministratorRequest.h"
#include "Tools/Disks/ListedDisks.h"

namespace Quillmere {

/// Of commands that erase or mount disks, the request with the names of the disks as they stand in the commands.
/// Nothing for any other commands.
[[nodiscard]] std::optional<AdministratorRequest> diskRequestFor(const ShellCommands &commands);

/// @p request with the whole identity of the disk that it names, as the user was shown it. Requests that name no disk
/// stay as they are. Fails with a sentence for a disk that was not shown, and for that of the running system.
[[nodiscard]] Result<AdministratorRequest> withIdentity(const AdministratorRequest &request, const ListedDisks &listed);

} // namespace Quillmere
