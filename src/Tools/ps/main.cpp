#include "Platform/Linux/System/ProcFile.h"
#include "Platform/Linux/System/ProcessTable.h"
#include "Tools/ps/ProcessLoads.h"
#include "Tools/ps/SampleStore.h"

#include <QStringList>

#include <cstdio>
#include <ctime>

#include <fcntl.h>
#include <unistd.h>

using namespace Quillmere;

namespace {

quint64 nanoseconds(clockid_t clock)
{
    timespec time = {};
    ::clock_gettime(clock, &time);
    return static_cast<quint64>(time.tv_sec) * 1'000'000'000 + static_cast<quint64>(time.tv_nsec);
}

Instant thisInstant()
{
    const QByteArray boot = readProcFile(AT_FDCWD, "/proc/sys/kernel/random/boot_id").value_or(QByteArray()).trimmed();
    return {boot, nanoseconds(CLOCK_BOOTTIME), nanoseconds(CLOCK_MONOTONIC),
            static_cast<quint64>(::sysconf(_SC_CLK_TCK))};
}

QList<ProcessStat> allProcesses()
{
    const ProcessTable table;
    QList<ProcessStat> processes;
    for (const pid_t pid : table.processes()) {
        if (const std::optional<ProcessStat> stat = table.stat(pid))
            processes.append(*stat);
    }
    return processes;
}

} // namespace

int main(int count, char *values[])
{
    const QList<QByteArray> arguments(values + 1, values + count);
    if (arguments != QList<QByteArray>{"-ax", "-o", "pid,%cpu,rss"}) {
        std::fputs("usage: ps -ax -o pid,%cpu,rss\n", stderr);
        return 1;
    }
    const SampleStore store(RuntimeFolder::ofThisUser());
    const QList<ProcessStat> processes = allProcesses();
    const LoadSample sample = sampleOf(processes, thisInstant(), store.load());
    const QByteArray text = listing(processes, sample, static_cast<quint64>(::sysconf(_SC_PAGESIZE)));
    const bool isPrinted
        = std::fwrite(text.constData(), 1, static_cast<size_t>(text.size()), stdout) == static_cast<size_t>(text.size())
        && std::fflush(stdout) == 0;
    store.keep(sample);
    return isPrinted ? 0 : 1;
}
