#pragma once

#include "Platform/Linux/Applications/ApplicationTrace.h"

#include <QHash>

namespace Quillmere {

/// A process of the user's and what it shows itself to be.
struct TracedProcess
{
    ProcessStat stat;
    ApplicationTrace trace;
};

using TracedProcesses = QHash<pid_t, TracedProcess>;

/// The first process of each instance of an application, in the order in which they were started. What another process
/// of its application has started belongs to that instance, whatever stands between the two. So does what has lost
/// such a parent: all of one control group are one instance, and elsewhere a helper, which is another program than the
/// application's oldest process, is none of its own.
[[nodiscard]] QList<TracedProcess> firstProcesses(const TracedProcesses &processes);

/// The processes of the instance that @p first is the first process of, itself included, the oldest first.
[[nodiscard]] QList<TracedProcess> processesOfInstance(const TracedProcess &first, const TracedProcesses &processes);

} // namespace Quillmere
