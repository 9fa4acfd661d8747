#pragma once

#include "Platform/Linux/Disks/Mount.h"
#include "Tools/AdministratorRequest.h"
#include "Tools/Disks/ListedDisks.h"

namespace Quillmere {

/// Of commands that erase or mount disks, the request with the names of the disks as they stand in the commands.
/// Nothing for any other commands. Erasing is known in two formats and with one label alone, those that are asked for.
[[nodiscard]] std::optional<AdministratorRequest> diskRequestFor(const ShellCommands &commands);

/// @p request with the whole identity of the disk that it names, as the user was shown it. Requests that name no disk
/// stay as they are. Fails with a sentence for a disk that was not shown, for that of the running system, and for an
/// order to erase by a name that the folder of one of @p mounts has too: a volume of which nothing is known is called
/// by its folder, so that the order may mean that one.
[[nodiscard]] Result<AdministratorRequest> withIdentity(const AdministratorRequest &request, const ListedDisks &listed,
                                                        const QList<MountEntry> &mounts);

} // namespace Quillmere
