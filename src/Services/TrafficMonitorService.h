#pragma once

#include "Models/TrafficStats.h"
#include "Platform/Clock.h"
#include "Platform/HostStatistics.h"
#include "Values/SharedInstance.h"

#include <memory>

namespace Quillmere {

/// What the interfaces of the machine move, as rates and as totals since a baseline. It unifies all who poll: each
/// question shortens the interval of the next, whoever asks. GUI thread only.
class TrafficMonitorService
{
public:
    struct Counters
    {
        quint64 download = 0; ///< Bytes.
        quint64 upload = 0; ///< Bytes.

        bool operator==(const Counters &) const = default;
    };

    /// Takes the baseline.
    TrafficMonitorService(std::shared_ptr<const HostStatistics> host, std::shared_ptr<const Clock> clock);

    [[nodiscard]] static TrafficMonitorService &shared() { return SharedInstance<TrafficMonitorService>::get(); }

    /// Rates are never taken over less than a second. A counter that has fallen moved nothing.
    [[nodiscard]] TrafficStats currentStats();
    /// Has the totals start over from now.
    void reset();

private:
    [[nodiscard]] static Counters readInterfaceCounters(const HostStatistics &host);

    std::shared_ptr<const HostStatistics> m_host;
    std::shared_ptr<const Clock> m_clock;
    Counters m_baselineCounters;
    Counters m_lastCounters;
    QDateTime m_lastSampleDate;
};

} // namespace Quillmere
