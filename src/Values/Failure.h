#pragma once

#include "Values/FilePath.h"

namespace Quillmere {

/// Why an operation did not happen, in a form the caller can branch on.
struct Failure
{
    enum class Kind {
        NotFound,
        NoPermission,
        AlreadyExists,
        Busy,
        NotAnswering, ///< The volume, as of a server that has gone, or that of the Trash where that is needed too.
        NoSpace,
        ReadOnly,
        LinkInPath, ///< A folder above the item is, or has become, a symbolic link.
        NotSupported, ///< The place cannot do this at all, such as a volume that takes no trash.
        Protected, ///< Refused by the machine layer itself: a root of the system, a mount point.
        Cancelled,
        Malformed, ///< What was read is not what it should be.
        Other,
    };

    Kind kind = Kind::Other;
    FilePath path; ///< What it happened to. Empty when nothing in particular.
    QString detail; ///< Usually the text of errno. For the log; shown only where the kind says nothing.

    [[nodiscard]] static Failure malformed(const QString &detail) { return {Kind::Malformed, {}, detail}; }

    bool operator==(const Failure &) const = default;
};

} // namespace Quillmere
