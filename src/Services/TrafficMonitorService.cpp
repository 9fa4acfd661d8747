#include "Services/TrafficMonitorService.h"

#include <algorithm>
#include <utility>

namespace Quillmere {

namespace {

quint64 growth(quint64 before, quint64 now)
{
    return now > before ? now - before : 0;
}

quint64 rate(quint64 before, quint64 now, double seconds)
{
    return static_cast<quint64>(static_cast<double>(growth(before, now)) / seconds);
}

} // namespace

TrafficMonitorService::TrafficMonitorService(std::shared_ptr<const HostStatistics> host,
                                             std::shared_ptr<const Clock> clock)
    : m_host(std::move(host))
    , m_clock(std::move(clock))
{
    reset();
}

void TrafficMonitorService::reset()
{
    m_baselineCounters = readInterfaceCounters(*m_host);
    m_lastCounters = m_baselineCounters;
    m_lastSampleDate = m_clock->now();
}

TrafficStats TrafficMonitorService::currentStats()
{
    const QDateTime now = m_clock->now();
    const Counters counters = readInterfaceCounters(*m_host);
    const double elapsed = static_cast<double>(m_lastSampleDate.msecsTo(now)) / 1000.0;
    const Counters before = std::exchange(m_lastCounters, counters);
    m_lastSampleDate = now;
    const double seconds = std::max(elapsed, 1.0);
    return {
        rate(before.download, counters.download, seconds),
        rate(before.upload, counters.upload, seconds),
        growth(m_baselineCounters.download, counters.download),
        growth(m_baselineCounters.upload, counters.upload),
    };
}

TrafficMonitorService::Counters TrafficMonitorService::readInterfaceCounters(const HostStatistics &host)
{
    Counters sums;
    const Result<QList<InterfaceCounters>> interfaces = host.interfaces();
    if (!interfaces)
        return sums;
    for (const InterfaceCounters &each : interfaces.value()) {
        if (!each.isUp || each.isLoopback || !each.hasData)
            continue;
        sums.download += each.received;
        sums.upload += each.sent;
    }
    return sums;
}

} // namespace Quillmere
