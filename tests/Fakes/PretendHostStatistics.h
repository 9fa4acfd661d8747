#pragma once

#include "Platform/HostStatistics.h"

namespace Quillmere {

/// Figures that stand still until they are set.
class PretendHostStatistics final : public HostStatistics
{
public:
    Result<CpuTicks> ticks = CpuTicks{100, 50, 800, 0};
    Result<VmStatistics> memory = VmStatistics{262'144, 786'432, 0}; ///< 4 GiB of pages.
    quint64 bytesPerPage = 4096;
    quint64 bytesOfMemory = quint64{16} << 30;
    Result<QList<InterfaceCounters>> counters = QList<InterfaceCounters>{{true, false, true, 1'000'000, 200'000}};

    mutable int looks = 0; ///< How often the processors were asked for.

    /// Has all interfaces move that much more.
    void move(quint64 received, quint64 sent);
    /// Lets that many ticks pass, so many percent of them busy.
    void spend(quint64 elapsed, quint64 percent);

    [[nodiscard]] Result<CpuTicks> cpuLoad() const override
    {
        ++looks;
        return ticks;
    }
    [[nodiscard]] Result<VmStatistics> virtualMemory() const override { return memory; }
    [[nodiscard]] quint64 pageSize() const override { return bytesPerPage; }
    [[nodiscard]] quint64 physicalMemory() const override { return bytesOfMemory; }
    [[nodiscard]] Result<QList<InterfaceCounters>> interfaces() const override { return counters; }
};

} // namespace Quillmere
