#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <optional>

#include <sys/types.h>

namespace Quillmere {

/// What /proc/PID/stat says of a process.
struct ProcessStat
{
    pid_t pid = 0;
    QByteArray name; ///< As the process calls itself: any bytes at all, cut to a few.
    char state = ' ';
    pid_t parent = 0;
    bool isKernelThread = false;
    quint64 ticks = 0; ///< Processor time of all its threads, in clock ticks.
    quint64 startTime = 0; ///< Clock ticks from the machine's start.
    quint64 residentPages = 0;

    /// True for a process that has ended and only waits for its parent to take notice.
    [[nodiscard]] bool hasEnded() const { return state == 'Z' || state == 'X'; }

    bool operator==(const ProcessStat &) const = default;
};

/// Nothing for text that is not such a file, whole up to the last field used.
[[nodiscard]] std::optional<ProcessStat> parseProcessStat(QByteArrayView text);

} // namespace Quillmere
