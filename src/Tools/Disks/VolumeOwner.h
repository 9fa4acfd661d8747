#pragma once

#include "Values/Result.h"

#include <optional>

#include <sys/types.h>

namespace Quillmere {

/// A user who gets the volumes that are made for him: of a file system that knows owners, the first folder is root's.
struct VolumeOwner
{
    uid_t user = 0;
    gid_t group = 0;

    /// The user whom pkexec has raised this program for. Nothing when there is none, or none such.
    [[nodiscard]] static std::optional<VolumeOwner> whoAskedForRights();

    /// Of file systems that know no owners nothing is changed. The volume is not to be mounted.
    [[nodiscard]] Result<void> take(const QByteArray &node, const QString &type) const;
};

} // namespace Quillmere
