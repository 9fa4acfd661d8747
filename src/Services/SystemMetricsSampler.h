#pragma once

#include "Platform/HostStatistics.h"

#include <memory>
#include <mutex>
#include <optional>

namespace Quillmere {

/// Load of the processors and of the memory, computed when somebody asks. The processors' load covers the time between
/// two questions to the same instance, so that each who polls needs one of their own. Safe to call from any thread.
class SystemMetricsSampler
{
public:
    struct MemorySnapshot
    {
        quint64 usedBytes = 0;
        quint64 totalBytes = 0; ///< The machine's physical memory.
        double usedPercentage = 0; ///< 0 to 100.

        bool operator==(const MemorySnapshot &) const = default;
    };

    explicit SystemMetricsSampler(std::shared_ptr<const HostStatistics> host);

    /// Percent, 0 to 100, since the previous question; 0 at the first, and when the machine does not answer.
    [[nodiscard]] double cpuUsage();
    /// Nothing used when the machine does not answer.
    [[nodiscard]] MemorySnapshot memoryUsage() const;

private:
    std::shared_ptr<const HostStatistics> m_host;
    std::mutex m_lock;
    std::optional<CpuTicks> m_previousCPUTicks;
};

} // namespace Quillmere
