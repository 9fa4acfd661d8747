#include "Services/MenuBarStatusService.h"

#include "Utilities/BackgroundWork.h"
#include "Utilities/ByteCountFormatter.h"
#include "Utilities/LocalizationManager.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

namespace Quillmere {

namespace {

constexpr std::chrono::seconds samplingInterval{5};
// 10 MiB per second, whatever the link could carry.
constexpr double referenceRate = 10'485'760;

double shareOfReference(const TrafficStats &stats)
{
    const quint64 rate = stats.currentDownload + stats.currentUpload;
    return std::min(static_cast<double>(rate) / referenceRate * 100.0, 100.0);
}

} // namespace

QString roundedPercent(double percent)
{
    return QString::number(std::llround(percent)) + u'%';
}

MenuBarStatusService::MenuBarStatusService(TrafficMonitorService &trafficMonitor,
                                           std::shared_ptr<const HostStatistics> host, QObject *parent)
    : QObject(parent)
    , m_trafficMonitor(trafficMonitor)
    , m_metricsSampler(std::move(host))
{
    m_timer.setTimerType(Qt::VeryCoarseTimer);
    m_timer.setInterval(samplingInterval);
    connect(&m_timer, &QTimer::timeout, this, &MenuBarStatusService::refresh);
}

void MenuBarStatusService::start()
{
    refresh();
    m_timer.start();
}

void MenuBarStatusService::refresh()
{
    const TrafficStats stats = m_trafficMonitor.currentStats();
    const double cpu = m_metricsSampler.cpuUsage();
    const double ram = m_metricsSampler.memoryUsage().usedPercentage;
    onMainQueue(QPointer(this), [stats, cpu, ram](MenuBarStatusService &service) { service.publish(stats, cpu, ram); });
}

void MenuBarStatusService::publish(const TrafficStats &stats, double cpu, double ram)
{
    m_trafficStats = stats;
    Q_EMIT trafficStatsChanged();
    m_cpuUsage = cpu;
    Q_EMIT cpuUsageChanged();
    m_ramUsage = ram;
    Q_EMIT ramUsageChanged();
    m_trafficUsage = shareOfReference(stats);
    Q_EMIT trafficUsageChanged();
}

QString MenuBarStatusService::statusBarTitle(MenuBarDisplayMode mode) const
{
    switch (mode) {
    case MenuBarDisplayMode::IconOnly:
        return {};
    case MenuBarDisplayMode::Cpu:
        return roundedPercent(m_cpuUsage);
    case MenuBarDisplayMode::Traffic:
        return roundedPercent(m_trafficUsage);
    case MenuBarDisplayMode::Ram:
        return roundedPercent(m_ramUsage);
    }
    Q_UNREACHABLE();
}

QString MenuBarStatusService::detailText() const
{
    const Localizer &texts = Localizer::shared();
    const QStringList parts = {
        texts.localized(u"menu.cpu"_qs) + u' ' + roundedPercent(m_cpuUsage),
        texts.localized(u"menu.ram"_qs) + u' ' + roundedPercent(m_ramUsage),
        texts.localized(u"menu.download"_qs) + u' ' + formatByteRate(m_trafficStats.currentDownload),
        texts.localized(u"menu.upload"_qs) + u' ' + formatByteRate(m_trafficStats.currentUpload),
    };
    return parts.join(u"   ");
}

} // namespace Quillmere
