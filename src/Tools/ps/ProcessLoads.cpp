#include "Tools/ps/ProcessLoads.h"

#include <algorithm>

namespace Quillmere {

namespace {

constexpr double nanosecondsPerSecond = 1e9;
// A tick is usually a hundredth of a second: over half a second a load is right to two percent.
constexpr quint64 shortestInterval = 500'000'000;
constexpr quint64 bytesPerKibibyte = 1024;

double percentage(quint64 ticks, double seconds, const Instant &now)
{
    return seconds > 0 ? static_cast<double>(ticks) / static_cast<double>(now.ticksPerSecond) / seconds * 100 : 0;
}

double lifelongLoad(const ProcessStat &process, const Instant &now)
{
    const double started = static_cast<double>(process.startTime) / static_cast<double>(now.ticksPerSecond);
    const double age = static_cast<double>(now.sinceStart) / nanosecondsPerSecond - started;
    // Younger than a tick, and yet with one to its name, it would seem to use any number of cores.
    return percentage(process.ticks, std::max(age, 1.0 / static_cast<double>(now.ticksPerSecond)), now);
}

bool isUsable(const std::optional<LoadSample> &before, const Instant &now)
{
    return before && !now.boot.isEmpty() && before->boot == now.boot && before->instant <= now.awake;
}

} // namespace

LoadSample sampleOf(const QList<ProcessStat> &processes, const Instant &now, const std::optional<LoadSample> &before)
{
    const bool isComparable = isUsable(before, now);
    const quint64 interval = isComparable ? now.awake - before->instant : 0;
    const bool isTooSoon = isComparable && interval < shortestInterval;
    LoadSample sample{now.boot, isTooSoon ? before->instant : now.awake, {}};
    sample.processes.reserve(processes.size());
    for (const ProcessStat &process : processes) {
        const auto known = isComparable ? before->processes.value(process.pid) : LoadSample::Process();
        const bool isKnown = isComparable && before->processes.contains(process.pid)
            && known.startTime == process.startTime && known.ticks <= process.ticks;
        if (isKnown && isTooSoon) {
            sample.processes.insert(process.pid, known);
            continue;
        }
        const double load = isKnown
            ? percentage(process.ticks - known.ticks, static_cast<double>(interval) / nanosecondsPerSecond, now)
            : lifelongLoad(process, now);
        sample.processes.insert(process.pid, {process.startTime, process.ticks, load});
    }
    return sample;
}

QByteArray listing(const QList<ProcessStat> &processes, const LoadSample &sample, quint64 pageSize)
{
    QByteArray text = "    PID  %CPU    RSS\n";
    for (const ProcessStat &process : processes) {
        const double load = sample.processes.value(process.pid).load;
        text += QByteArray::number(process.pid).rightJustified(7) + ' '
            + QByteArray::number(load, 'f', 1).rightJustified(5) + ' '
            + QByteArray::number(process.residentPages * pageSize / bytesPerKibibyte).rightJustified(6) + '\n';
    }
    return text;
}

} // namespace Quillmere
