#pragma once

#include <QByteArray>
#include <QByteArrayView>

namespace Quillmere {

/// What the name of a control group tells of the processes in it.
struct CgroupApplication
{
    QByteArray desktopId; ///< Without ".desktop"; empty where the group is no application's.
    QByteArray unit; ///< The group itself: of two groups of one application, each is an instance.

    bool operator==(const CgroupApplication &) const = default;
};

/// Reads what /proc/PID/cgroup holds. The innermost unit counts: a terminal's shells, in scopes of their own inside
/// the terminal's slice, are not the terminal.
[[nodiscard]] CgroupApplication parseCgroup(QByteArrayView text);

} // namespace Quillmere
