#pragma once

#include "Models/ResourceProcess.h"
#include "Platform/ProcessRunner.h"
#include "Platform/Workspace.h"
#include "Services/TrafficControlService.h"

#include <QHash>
#include <QObject>
#include <QTimer>

#include <QCoro/QCoroTask>

#include <memory>
#include <optional>

namespace Quillmere {

/// The running applications with what they use of the machine, refreshed while somebody looks. GUI thread only.
class ResourceMonitorService final : public QObject
{
    Q_OBJECT

public:
    struct Statistics
    {
        double cpu = 0; ///< Percent of one core.
        quint64 memory = 0; ///< Bytes.

        bool operator==(const Statistics &) const = default;
    };

    ResourceMonitorService(std::shared_ptr<const Workspace> workspace, std::shared_ptr<const ProcessRunner> processes,
                           TrafficControlService &trafficControl, QObject *parent = nullptr);

    /// The highest load first.
    [[nodiscard]] const QList<ResourceProcess> &processes() const { return m_processes; }
    [[nodiscard]] bool isMonitoring() const { return m_isMonitoring; }

    /// Refreshes now and every ten seconds.
    void startMonitoring();
    /// The list stays as it is.
    void stopMonitoring();
    /// Waits for the figures. The new list is published through the main queue, so later than this call.
    void refreshProcesses();
    /// Puts the application's rule to the opposite. Answers with what to tell the user, nothing when it took effect.
    /// With a @p launchTime, another application that has come to the number counts as gone.
    [[nodiscard]] QCoro::Task<std::optional<QString>> toggleInternetAccess(qint32 pid,
                                                                           std::optional<quint64> launchTime = {});
    /// Ends the application at once. False when it has gone; with a @p launchTime, whatever else has come to its number
    /// is left alone.
    bool forceQuitProcess(qint32 pid, std::optional<quint64> launchTime = {});

    /// The figures in what `ps -o pid,%cpu,rss` prints, by process. A line that is not understood is left out.
    [[nodiscard]] static QHash<qint32, Statistics> parseStatistics(const QByteArray &output);

Q_SIGNALS:
    void processesChanged();
    void isMonitoringChanged();

private:
    [[nodiscard]] QHash<qint32, Statistics> getSystemProcessStats() const;
    [[nodiscard]] ResourceProcess process(const RunningApplication &application, const Statistics &statistics) const;
    [[nodiscard]] bool isInternetBlocked(const QString &name, const std::optional<QString> &bundleIdentifier) const;
    void setIsMonitoring(bool isMonitoring);
    void publish(const QList<ResourceProcess> &processes);

    std::shared_ptr<const Workspace> m_workspace;
    std::shared_ptr<const ProcessRunner> m_runner;
    TrafficControlService &m_trafficControl;
    QTimer m_timer{this};
    QList<ResourceProcess> m_processes;
    bool m_isMonitoring = false;
};

} // namespace Quillmere
