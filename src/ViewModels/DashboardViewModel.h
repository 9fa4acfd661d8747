#pragma once

#include "App/AppState.h"
#include "Platform/FileManager.h"
#include "Platform/HostStatistics.h"
#include "Platform/ProcessRunner.h"
#include "Services/CleanupService.h"
#include "Services/DiskSpaceService.h"
#include "Services/PowerManagementService.h"
#include "Services/ResourceMonitorService.h"
#include "Services/ScannerService.h"
#include "Services/SystemMetricsSampler.h"
#include "Services/TrafficControlService.h"
#include "Services/TrafficMonitorService.h"

#include <QObject>
#include <QTimer>

#include <QCoro/QCoroTask>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace Quillmere {

namespace SystemStatuses {
Q_NAMESPACE

/// How the machine is doing, by its disk and its memory.
enum class SystemStatus { Good, NeedsAttention, Critical };
Q_ENUM_NS(SystemStatus)
} // namespace SystemStatuses

namespace LoadLevels {
Q_NAMESPACE

/// How a single figure is coloured. Its steps are not those of SystemStatus.
enum class LoadLevel { Normal, Elevated, High };
Q_ENUM_NS(LoadLevel)
} // namespace LoadLevels

using LoadLevels::LoadLevel;
using SystemStatuses::SystemStatus;

/// The dashboard: the machine's figures, refreshed while it is on screen, and the quick actions.
class DashboardViewModel final : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isLoading READ isLoading NOTIFY isLoadingChanged)
    Q_PROPERTY(bool isCleaning READ isCleaning NOTIFY isCleaningChanged)
    Q_PROPERTY(bool isOptimizing READ isOptimizing NOTIFY isOptimizingChanged)
    Q_PROPERTY(QString cleaningMessage READ cleaningMessage NOTIFY cleaningMessageChanged)
    Q_PROPERTY(Quillmere::SystemStatuses::SystemStatus systemStatus READ systemStatus NOTIFY statsChanged)
    Q_PROPERTY(double cpuUsage READ cpuUsage NOTIFY statsChanged)
    Q_PROPERTY(QString cpuText READ cpuText NOTIFY statsChanged)
    Q_PROPERTY(Quillmere::LoadLevels::LoadLevel cpuLevel READ cpuLevel NOTIFY statsChanged)
    Q_PROPERTY(double ramUsage READ ramUsage NOTIFY statsChanged)
    Q_PROPERTY(QString ramText READ ramText NOTIFY statsChanged)
    Q_PROPERTY(Quillmere::LoadLevels::LoadLevel ramLevel READ ramLevel NOTIFY statsChanged)
    Q_PROPERTY(QString formattedRAMInfo READ formattedRAMInfo NOTIFY statsChanged)
    Q_PROPERTY(double diskUsage READ diskUsage NOTIFY statsChanged)
    Q_PROPERTY(QString diskText READ diskText NOTIFY statsChanged)
    Q_PROPERTY(Quillmere::LoadLevels::LoadLevel diskLevel READ diskLevel NOTIFY statsChanged)
    Q_PROPERTY(QString usedSpaceText READ usedSpaceText NOTIFY statsChanged)
    Q_PROPERTY(QString freeSpaceText READ freeSpaceText NOTIFY statsChanged)
    Q_PROPERTY(QString currentDownloadText READ currentDownloadText NOTIFY statsChanged)
    Q_PROPERTY(QString currentUploadText READ currentUploadText NOTIFY statsChanged)
    Q_PROPERTY(QString totalDownloadText READ totalDownloadText NOTIFY statsChanged)
    Q_PROPERTY(QString totalUploadText READ totalUploadText NOTIFY statsChanged)
    Q_PROPERTY(bool ecoTrafficEnabled READ ecoTrafficEnabled NOTIFY statsChanged)
    Q_PROPERTY(QString trafficErrorMessage READ trafficErrorMessage NOTIFY trafficErrorMessageChanged)
    Q_PROPERTY(bool isKeptAwake READ isKeptAwake NOTIFY isKeptAwakeChanged)
    Q_PROPERTY(QString lastScanText READ lastScanText NOTIFY lastScanTextChanged)

public:
    /// Everything that the dashboard shows and starts. What is referred to outlives it.
    struct Parts
    {
        std::shared_ptr<const FileManager> files;
        std::shared_ptr<const HostStatistics> host;
        std::shared_ptr<const ProcessRunner> processes;
        CleanupService cleaner;
        std::function<std::shared_ptr<ScannerService>()> makeScanner;
        std::function<std::unique_ptr<ResourceMonitorService>()> makeResourceMonitor;
        TrafficMonitorService &trafficMonitor;
        TrafficControlService &trafficControl;
        PowerManagementService &power;
        AppState &state;
        /// How long the outcome of a quick action is left to be read.
        std::chrono::milliseconds readingTime{1500};
    };

    explicit DashboardViewModel(Parts parts, QObject *parent = nullptr);
    /// Ends a scan under way. What is being removed already is brought to its end.
    ~DashboardViewModel() override;

    [[nodiscard]] bool isLoading() const { return m_isLoading; }
    [[nodiscard]] bool isCleaning() const { return m_isCleaning; }
    [[nodiscard]] bool isOptimizing() const { return m_isOptimizing; }
    [[nodiscard]] QString cleaningMessage() const { return m_cleaningMessage; }
    [[nodiscard]] const std::optional<DiskSpaceService::DiskSpaceInfo> &diskSpace() const { return m_diskSpace; }
    /// Never written.
    [[nodiscard]] qint64 safeCacheSize() const { return m_safeCacheSize; }
    [[nodiscard]] SystemStatus systemStatus() const { return m_systemStatus; }
    /// Percent.
    [[nodiscard]] double cpuUsage() const { return m_cpuUsage; }
    [[nodiscard]] QString cpuText() const;
    [[nodiscard]] LoadLevel cpuLevel() const;
    /// Percent.
    [[nodiscard]] double ramUsage() const { return m_ramUsage; }
    [[nodiscard]] QString ramText() const;
    [[nodiscard]] LoadLevel ramLevel() const;
    /// Used and total memory.
    [[nodiscard]] QString formattedRAMInfo() const;
    /// 0 to 1.
    [[nodiscard]] double diskUsage() const;
    [[nodiscard]] QString diskText() const;
    [[nodiscard]] LoadLevel diskLevel() const;
    [[nodiscard]] QString usedSpaceText() const;
    [[nodiscard]] QString freeSpaceText() const;
    [[nodiscard]] const TrafficStats &trafficStats() const { return m_trafficStats; }
    [[nodiscard]] QString currentDownloadText() const;
    [[nodiscard]] QString currentUploadText() const;
    [[nodiscard]] QString totalDownloadText() const;
    [[nodiscard]] QString totalUploadText() const;
    [[nodiscard]] bool ecoTrafficEnabled() const { return m_ecoTrafficEnabled; }
    /// What to tell of a switch of eco traffic that was refused. Empty when there is nothing to tell.
    [[nodiscard]] QString trafficErrorMessage() const { return m_trafficErrorMessage.value_or(QString()); }
    [[nodiscard]] bool isKeptAwake() const { return m_parts.power.isKeepAwakeEnabled(); }
    /// Empty until a scan has ended in this run of the program.
    [[nodiscard]] QString lastScanText() const;

    /// Refreshes now and every five seconds. A second call changes nothing.
    Q_INVOKABLE void startAutoRefresh();
    Q_INVOKABLE void stopAutoRefresh() { m_timer.stop(); }
    /// Measures everything anew, at once.
    Q_INVOKABLE void refresh() { updateLiveStats(); }
    /// Deletes what a scan of the safe categories finds in caches and temporary folders, without a further question.
    Q_INVOKABLE void runFastCacheCleanup() { cleanCaches(); }
    /// Ends the scan of a cleanup. Once files are being removed it changes nothing.
    Q_INVOKABLE void cancelCleanup();
    Q_INVOKABLE void runSpeedOptimizer() { optimize(); }
    Q_INVOKABLE void resetTrafficCalculation();
    Q_INVOKABLE void toggleEcoTraffic() { switchEcoTraffic(); }
    Q_INVOKABLE void dismissTrafficError();
    Q_INVOKABLE void toggleKeepAwake();

    // Started and left to themselves; whoever wants to know when they end awaits them.
    QCoro::Task<> cleanCaches();
    QCoro::Task<> optimize();
    QCoro::Task<> switchEcoTraffic();

Q_SIGNALS:
    void isLoadingChanged();
    void isCleaningChanged();
    void isOptimizingChanged();
    void cleaningMessageChanged();
    void statsChanged();
    void trafficErrorMessageChanged();
    void isKeptAwakeChanged();
    void lastScanTextChanged();

private:
    void updateLiveStats();
    void setIsLoading(bool isLoading);
    void setIsCleaning(bool isCleaning);
    void setIsOptimizing(bool isOptimizing);
    void setCleaningMessage(const QString &message);
    void setTrafficErrorMessage(const std::optional<QString> &message);
    void endCleanup(const Failure &failure);
    void quitBusiestApplications();

    Parts m_parts;
    SystemMetricsSampler m_metricsSampler;
    QTimer m_timer{this};
    std::shared_ptr<ScannerService> m_activeScan;
    std::optional<DiskSpaceService::DiskSpaceInfo> m_diskSpace;
    const qint64 m_safeCacheSize = 0;
    double m_cpuUsage = 0;
    double m_ramUsage = 0;
    SystemMetricsSampler::MemorySnapshot m_memory;
    SystemStatus m_systemStatus = SystemStatus::Good;
    bool m_isLoading = false;
    bool m_isCleaning = false;
    bool m_isOptimizing = false;
    QString m_cleaningMessage;
    TrafficStats m_trafficStats;
    bool m_ecoTrafficEnabled;
    std::optional<QString> m_trafficErrorMessage;
};

/// What the disk's share (0 to 1) and the memory's (percent) say together.
[[nodiscard]] SystemStatus systemStatusOf(double diskUsage, double ramUsage);

} // namespace Quillmere
