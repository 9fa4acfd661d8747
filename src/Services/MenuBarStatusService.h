#pragma once

#include "Models/AppSettings.h"
#include "Services/SystemMetricsSampler.h"
#include "Services/TrafficMonitorService.h"

#include <QObject>
#include <QTimer>

namespace Quillmere {

/// The figures of the status item, sampled every five seconds for as long as the program runs. GUI thread only.
class MenuBarStatusService final : public QObject
{
    Q_OBJECT

public:
    MenuBarStatusService(TrafficMonitorService &trafficMonitor, std::shared_ptr<const HostStatistics> host,
                         QObject *parent = nullptr);

    /// Percent.
    [[nodiscard]] double cpuUsage() const { return m_cpuUsage; }
    /// Percent.
    [[nodiscard]] double ramUsage() const { return m_ramUsage; }
    /// Percent of a fixed reference of 10 MiB per second, 0 to 100.
    [[nodiscard]] double trafficUsage() const { return m_trafficUsage; }
    [[nodiscard]] const TrafficStats &trafficStats() const { return m_trafficStats; }

    /// Samples now, and from now on every five seconds. A second call begins the interval anew.
    void start();
    /// What stands beside the icon. Empty where nothing does.
    [[nodiscard]] QString statusBarTitle(MenuBarDisplayMode mode) const;
    /// All figures in one line.
    [[nodiscard]] QString detailText() const;

Q_SIGNALS:
    // In this order after each sample, whether the value is another one or not.
    void trafficStatsChanged();
    void cpuUsageChanged();
    void ramUsageChanged();
    void trafficUsageChanged();

private:
    void refresh();
    void publish(const TrafficStats &stats, double cpu, double ram);

    TrafficMonitorService &m_trafficMonitor;
    SystemMetricsSampler m_metricsSampler;
    QTimer m_timer{this};
    double m_cpuUsage = 0;
    double m_ramUsage = 0;
    double m_trafficUsage = 0;
    TrafficStats m_trafficStats;
};

/// A share as the status item writes it: "42%".
[[nodiscard]] QString roundedPercent(double percent);

} // namespace Quillmere
