#include "Services/SystemMetricsSampler.h"

#include <algorithm>
#include <utility>

namespace Quillmere {

namespace {

// The differences wrap on purpose: a counter that starts over still tells the time that has passed.
double loadBetween(const CpuTicks &before, const CpuTicks &now)
{
    const quint64 user = now.user - before.user;
    const quint64 system = now.system - before.system;
    const quint64 idle = now.idle - before.idle;
    const quint64 nice = now.nice - before.nice;
    const quint64 total = user + system + idle + nice;
    if (total == 0)
        return 0;
    const quint64 busy = user + system + nice;
    return std::clamp(static_cast<double>(busy) / static_cast<double>(total) * 100.0, 0.0, 100.0);
}

} // namespace

SystemMetricsSampler::SystemMetricsSampler(std::shared_ptr<const HostStatistics> host)
    : m_host(std::move(host))
{
}

double SystemMetricsSampler::cpuUsage()
{
    const Result<CpuTicks> ticks = m_host->cpuLoad();
    if (!ticks)
        return 0;
    const std::scoped_lock lock(m_lock);
    const std::optional<CpuTicks> previous = std::exchange(m_previousCPUTicks, ticks.value());
    return previous ? loadBetween(*previous, ticks.value()) : 0;
}

SystemMetricsSampler::MemorySnapshot SystemMetricsSampler::memoryUsage() const
{
    const Result<VmStatistics> memory = m_host->virtualMemory();
    const quint64 total = m_host->physicalMemory();
    if (!memory || total == 0)
        return {0, total, 0};
    const VmStatistics &pages = memory.value();
    const quint64 available = (pages.freeCount + pages.inactiveCount + pages.speculativeCount) * m_host->pageSize();
    const quint64 used = total - std::min(total, available);
    return {used, total, std::clamp(static_cast<double>(used) / static_cast<double>(total) * 100.0, 0.0, 100.0)};
}

} // namespace Quillmere
