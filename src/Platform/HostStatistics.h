#pragma once

#include "Values/Result.h"

#include <QList>

namespace Quillmere {

/// Time that the processors have spent since the machine started, added over all of them, in ticks.
struct CpuTicks
{
    quint64 user = 0;
    quint64 system = 0;
    quint64 idle = 0;
    quint64 nice = 0; ///< Work that gave way to other work.

    bool operator==(const CpuTicks &) const = default;
};

/// Pages of memory that could be handed out at once.
struct VmStatistics
{
    quint64 freeCount = 0;
    quint64 inactiveCount = 0;
    quint64 speculativeCount = 0;

    bool operator==(const VmStatistics &) const = default;
};

/// What one network interface has moved since it came up.
struct InterfaceCounters
{
    bool isUp = false;
    bool isLoopback = false;
    bool hasData = true; ///< False for an interface that keeps no counters.
    quint64 received = 0; ///< Bytes.
    quint64 sent = 0; ///< Bytes.

    bool operator==(const InterfaceCounters &) const = default;
};

/// The machine's own figures about itself. Safe to call from any thread; an answer takes well under a millisecond.
class HostStatistics
{
public:
    virtual ~HostStatistics() = default;

    [[nodiscard]] virtual Result<CpuTicks> cpuLoad() const = 0;
    [[nodiscard]] virtual Result<VmStatistics> virtualMemory() const = 0;
    /// Bytes.
    [[nodiscard]] virtual quint64 pageSize() const = 0;
    /// Bytes; 0 when the machine does not say.
    [[nodiscard]] virtual quint64 physicalMemory() const = 0;
    /// Every interface, whatever its state and kind.
    [[nodiscard]] virtual Result<QList<InterfaceCounters>> interfaces() const = 0;
};

} // namespace Quillmere
