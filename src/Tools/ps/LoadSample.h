#pragma once

#include <QByteArray>
#include <QHash>

#include <optional>

#include <sys/types.h>

namespace Quillmere {

/// The processor time of every process at one instant, and the load it was found to be.
struct LoadSample
{
    struct Process
    {
        quint64 startTime = 0; ///< Tells a process from a later one of the same number.
        quint64 ticks = 0;
        double load = 0; ///< Percent of one core.

        bool operator==(const Process &) const = default;
    };

    QByteArray boot; ///< The kernel's name for this run of the machine. Ticks of another one mean nothing.
    quint64 instant = 0; ///< Nanoseconds for which the machine has been awake in this run.
    QHash<pid_t, Process> processes;

    bool operator==(const LoadSample &) const = default;

    [[nodiscard]] QByteArray written() const;
    /// Nothing for text that written() would not have written, or not to its end.
    [[nodiscard]] static std::optional<LoadSample> read(const QByteArray &text);
};

} // namespace Quillmere
