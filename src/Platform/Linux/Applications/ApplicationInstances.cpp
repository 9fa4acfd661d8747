#include "Platform/Linux/Applications/ApplicationInstances.h"

#include <QSet>

#include <algorithm>
#include <tuple>
#include <utility>

namespace Quillmere {

namespace {

/// True when the nearest ancestor that is an application's is of the same instance.
bool belongsToAncestor(const TracedProcess &process, const TracedProcesses &processes)
{
    // While the processes are read, numbers change hands: following parents may lead in a circle.
    pid_t parent = process.stat.parent;
    for (qsizetype steps = 0; steps < processes.size(); ++steps) {
        const auto ancestor = processes.constFind(parent);
        if (ancestor == processes.constEnd())
            return false;
        if (ancestor->trace.entry)
            return ancestor->trace.entry == process.trace.entry && ancestor->trace.unit == process.trace.unit;
        parent = ancestor->stat.parent;
    }
    return false;
}

bool descendsFrom(const TracedProcess &process, pid_t ancestor, const TracedProcesses &processes)
{
    pid_t parent = process.stat.parent;
    for (qsizetype steps = 0; steps < processes.size() && parent != ancestor; ++steps) {
        const auto next = processes.constFind(parent);
        if (next == processes.constEnd())
            return false;
        parent = next->stat.parent;
    }
    return parent == ancestor;
}

auto age(const TracedProcess &process)
{
    return std::tuple(process.stat.startTime, process.stat.pid);
}

} // namespace

QList<TracedProcess> firstProcesses(const TracedProcesses &processes)
{
    QList<TracedProcess> candidates;
    for (const TracedProcess &process : processes) {
        if (process.trace.entry && !belongsToAncestor(process, processes))
            candidates.append(process);
    }
    std::ranges::sort(candidates, {}, age);

    QList<TracedProcess> first;
    QSet<QByteArray> units;
    QHash<const DesktopEntry *, FilePath> programs;
    for (const TracedProcess &process : std::as_const(candidates)) {
        const ApplicationTrace &trace = process.trace;
        if (trace.unit.isEmpty() && !programs.contains(trace.entry))
            programs.insert(trace.entry, trace.program);
        const bool belongsToEarlier
            = trace.unit.isEmpty() ? programs.value(trace.entry) != trace.program : units.contains(trace.unit);
        units.insert(trace.unit);
        if (!belongsToEarlier)
            first.append(process);
    }
    return first;
}

QList<TracedProcess> processesOfInstance(const TracedProcess &first, const TracedProcesses &processes)
{
    const QByteArray &unit = first.trace.unit;
    QList<TracedProcess> found;
    for (const TracedProcess &process : processes) {
        if (process.stat.pid == first.stat.pid || (!unit.isEmpty() && process.trace.unit == unit)
            || descendsFrom(process, first.stat.pid, processes))
            found.append(process);
    }
    std::ranges::sort(found, {}, age);
    return found;
}

} // namespace Quillmere
