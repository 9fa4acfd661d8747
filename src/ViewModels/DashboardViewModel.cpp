#include "ViewModels/DashboardViewModel.h"

#include "Utilities/Attempt.h"
#include "Utilities/BackgroundWork.h"
#include "Utilities/ByteCountFormatter.h"
#include "Utilities/DateFormatter.h"
#include "Utilities/Diagnostics.h"
#include "Utilities/LocalizationManager.h"
#include "ViewModels/UnfinishedRuns.h"

#include <QCoro/QCoroTimer>

#include <algorithm>
#include <tuple>
#include <utility>

namespace Quillmere {

namespace {

constexpr std::chrono::seconds interval{5};
const FilePath startupVolume("/");

QString byteCount(quint64 bytes)
{
    return formatByteCount(static_cast<qint64>(bytes));
}

QString percent(double value)
{
    return QString::asprintf("%.1f%%", value);
}

LoadLevel levelOf(double value, double elevatedAbove, double highAbove)
{
    if (value > highAbove)
        return LoadLevel::High;
    return value > elevatedAbove ? LoadLevel::Elevated : LoadLevel::Normal;
}

QList<CleanupItem> itemsOf(const QList<CleanupCategory> &categories)
{
    QList<CleanupItem> items;
    for (const CleanupCategory &category : categories)
        items += category.items;
    return items;
}

} // namespace

SystemStatus systemStatusOf(double diskUsage, double ramUsage)
{
    if (diskUsage > 0.9 || ramUsage > 90.0)
        return SystemStatus::Critical;
    if (diskUsage > 0.8 || ramUsage > 80.0)
        return SystemStatus::NeedsAttention;
    return SystemStatus::Good;
}

DashboardViewModel::DashboardViewModel(Parts parts, QObject *parent)
    : QObject(parent)
    , m_parts(std::move(parts))
    , m_metricsSampler(m_parts.host)
    , m_ecoTrafficEnabled(m_parts.trafficControl.ecoTrafficEnabled())
{
    m_timer.setTimerType(Qt::VeryCoarseTimer);
    m_timer.setInterval(interval);
    connect(&m_timer, &QTimer::timeout, this, &DashboardViewModel::updateLiveStats);
    connect(&m_parts.power, &PowerManagementService::isKeepAwakeEnabledChanged, this,
            &DashboardViewModel::isKeptAwakeChanged);
    connect(&m_parts.state, &AppState::lastScanDateChanged, this, &DashboardViewModel::lastScanTextChanged);
    connect(&Localizer::shared(), &Localizer::languageChanged, this, [this] {
        Q_EMIT statsChanged();
        Q_EMIT lastScanTextChanged();
    });
}

DashboardViewModel::~DashboardViewModel()
{
    cancelCleanup();
}

void DashboardViewModel::startAutoRefresh()
{
    if (m_timer.isActive())
        return;
    onMainQueue(QPointer(this), [](DashboardViewModel &model) {
        model.setIsLoading(true);
        model.updateLiveStats();
        model.setIsLoading(false);
    });
    m_timer.start();
}

void DashboardViewModel::updateLiveStats()
{
    m_diskSpace = DiskSpaceService::getDiskSpace(startupVolume, *m_parts.files);
    m_trafficStats = m_parts.trafficMonitor.currentStats();
    m_ecoTrafficEnabled = m_parts.trafficControl.ecoTrafficEnabled();
    m_cpuUsage = m_metricsSampler.cpuUsage();
    m_memory = m_metricsSampler.memoryUsage();
    m_ramUsage = m_memory.usedPercentage;
    m_systemStatus = systemStatusOf(m_diskSpace->usagePercentage, m_ramUsage);
    Q_EMIT statsChanged();
}

QString DashboardViewModel::cpuText() const
{
    return percent(m_cpuUsage);
}

LoadLevel DashboardViewModel::cpuLevel() const
{
    return levelOf(m_cpuUsage, 50.0, 80.0);
}

QString DashboardViewModel::ramText() const
{
    return percent(m_ramUsage);
}

LoadLevel DashboardViewModel::ramLevel() const
{
    return levelOf(m_ramUsage, 70.0, 85.0);
}

QString DashboardViewModel::formattedRAMInfo() const
{
    return formatMemoryByteCount(static_cast<qint64>(m_memory.usedBytes)) + u" / "_qs
        + formatMemoryByteCount(static_cast<qint64>(m_memory.totalBytes));
}

double DashboardViewModel::diskUsage() const
{
    return m_diskSpace ? m_diskSpace->usagePercentage : 0;
}

QString DashboardViewModel::diskText() const
{
    return QString::asprintf("%.0f%%", diskUsage() * 100);
}

LoadLevel DashboardViewModel::diskLevel() const
{
    return levelOf(diskUsage(), 0.8, 0.9);
}

QString DashboardViewModel::usedSpaceText() const
{
    return formatByteCount(m_diskSpace ? m_diskSpace->usedSpace : 0);
}

QString DashboardViewModel::freeSpaceText() const
{
    return formatByteCount(m_diskSpace ? m_diskSpace->freeSpace : 0);
}

QString DashboardViewModel::currentDownloadText() const
{
    return formatByteRate(m_trafficStats.currentDownload);
}

QString DashboardViewModel::currentUploadText() const
{
    return formatByteRate(m_trafficStats.currentUpload);
}

QString DashboardViewModel::totalDownloadText() const
{
    return byteCount(m_trafficStats.totalDownload);
}

QString DashboardViewModel::totalUploadText() const
{
    return byteCount(m_trafficStats.totalUpload);
}

QString DashboardViewModel::lastScanText() const
{
    const QDateTime date = m_parts.state.lastScanDate();
    return date.isValid() ? formatAbbreviatedDateAndTime(date) : QString();
}

QCoro::Task<> DashboardViewModel::cleanCaches()
{
    setIsCleaning(true);
    setCleaningMessage(localized(u"dashboard.scanCaches"_qs));
    const QPointer self(this);
    const CleanupService cleaner = m_parts.cleaner;
    const std::shared_ptr<ScannerService> scanner = m_parts.makeScanner();
    m_activeScan = scanner;
    auto scanning = inBackground(
        [scanner] { return attempted([&] { return scanner->scanSafeCategories([](double, const QString &) {}); }); });
    const Result<QList<CleanupCategory>> found = co_await scanning;
    if (!self)
        co_return;
    if (!found) {
        endCleanup(found.failure());
        co_return;
    }

    // A scan may end with the program; what has begun to be removed is brought to its end.
    const UnfinishedRuns::Token unfinished(UnfinishedRuns::shared());
    setCleaningMessage(localized(u"dashboard.removeCaches"_qs));
    const QList<CleanupItem> items = itemsOf(found.value());
    auto removing = inBackground([cleaner, items] { return cleaner.cleanItems(items, false, [](double) {}); });
    const CleanupResult result = co_await removing;
    // Neither the message nor the end of the program waits for it.
    std::ignore = inBackground([=] { cleaner.synchronize(items, result); });
    if (!self)
        co_return;
    setCleaningMessage(localized(u"dashboard.cleanedCaches"_qs) + u": "_qs + formatByteCount(result.sizeCleaned));
    auto reading = QCoro::sleepFor(m_parts.readingTime);
    co_await reading;
    if (!self)
        co_return;
    updateLiveStats();
    m_activeScan.reset();
    setIsCleaning(false);
}

void DashboardViewModel::endCleanup(const Failure &failure)
{
    printDiagnostic(u"Fast cache cleanup error: "_qs, failure);
    m_activeScan.reset();
    setIsCleaning(false);
}

void DashboardViewModel::cancelCleanup()
{
    if (m_activeScan)
        m_activeScan->cancelScan();
}

QCoro::Task<> DashboardViewModel::optimize()
{
    setIsOptimizing(true);
    const QPointer self(this);
    quitBusiestApplications();
    auto purging = inBackground([processes = m_parts.processes] {
        return processes->run({u"/usr/sbin/purge"_qs, {}});
    });
    const Result<ProcessOutcome> purged = co_await purging;
    if (!purged)
        printDiagnostic(u"RAM Purge error: "_qs, purged.failure());
    if (!self)
        co_return;
    auto reading = QCoro::sleepFor(m_parts.readingTime);
    co_await reading;
    if (!self)
        co_return;
    updateLiveStats();
    setIsOptimizing(false);
}

void DashboardViewModel::quitBusiestApplications()
{
    constexpr qsizetype most = 3;
    const std::unique_ptr<ResourceMonitorService> monitor = m_parts.makeResourceMonitor();
    monitor->refreshProcesses();
    // The list is published through the main queue, so that here it is still empty and nothing is ended: the action
    // closes no application unasked. Whatever is changed about the order must keep that.
    QList<ResourceProcess> candidates = monitor->processes();
    candidates.removeIf([](const ResourceProcess &process) { return process.isSystemProcess || !process.canQuit; });
    std::ranges::stable_sort(candidates, std::ranges::greater(), [](const ResourceProcess &process) {
        return process.cpuUsage + static_cast<double>(process.memoryUsage) / 100'000'000;
    });
    for (const ResourceProcess &process : candidates.first(std::min(candidates.size(), most)))
        std::ignore = monitor->forceQuitProcess(process.pid);
}

void DashboardViewModel::resetTrafficCalculation()
{
    m_parts.trafficMonitor.reset();
    m_trafficStats = {};
    Q_EMIT statsChanged();
}

QCoro::Task<> DashboardViewModel::switchEcoTraffic()
{
    setTrafficErrorMessage({});
    const QPointer self(this);
    TrafficControlService &trafficControl = m_parts.trafficControl;
    auto setting = trafficControl.setEcoTrafficEnabled(!m_ecoTrafficEnabled);
    const bool isAccepted = co_await setting;
    if (!self)
        co_return;
    m_ecoTrafficEnabled = trafficControl.ecoTrafficEnabled();
    Q_EMIT statsChanged();
    if (!isAccepted) {
        setTrafficErrorMessage(
            trafficControl.lastError().value_or(u"Unable to change the outbound traffic policy."_qs));
    }
}

void DashboardViewModel::dismissTrafficError()
{
    setTrafficErrorMessage({});
}

void DashboardViewModel::toggleKeepAwake()
{
    m_parts.power.setKeepAwake(!isKeptAwake(), &m_parts.state);
}

void DashboardViewModel::setIsLoading(bool isLoading)
{
    m_isLoading = isLoading;
    Q_EMIT isLoadingChanged();
}

void DashboardViewModel::setIsCleaning(bool isCleaning)
{
    m_isCleaning = isCleaning;
    Q_EMIT isCleaningChanged();
}

void DashboardViewModel::setIsOptimizing(bool isOptimizing)
{
    m_isOptimizing = isOptimizing;
    Q_EMIT isOptimizingChanged();
}

void DashboardViewModel::setCleaningMessage(const QString &message)
{
    m_cleaningMessage = message;
    Q_EMIT cleaningMessageChanged();
}

void DashboardViewModel::setTrafficErrorMessage(const std::optional<QString> &message)
{
    m_trafficErrorMessage = message;
    Q_EMIT trafficErrorMessageChanged();
}

} // namespace Quillmere
