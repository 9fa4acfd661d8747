#include "Services/ResourceMonitorService.h"

#include "Utilities/BackgroundWork.h"
#include "Utilities/Diagnostics.h"

#include <QStringDecoder>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <utility>

namespace Quillmere {

namespace {

constexpr std::chrono::seconds refreshInterval{10};
constexpr quint64 bytesPerKibibyte = 1024;

std::optional<RunningApplication> find(const QList<RunningApplication> &applications, qint32 pid,
                                       std::optional<quint64> launchTime)
{
    const auto found = std::ranges::find(applications, pid, &RunningApplication::processIdentifier);
    if (found == applications.end() || (launchTime && *launchTime != found->launchTime))
        return std::nullopt;
    return *found;
}

/// The whole of @p field as a number, in the form of the C locale; nothing for anything else.
template<typename Number>
std::optional<Number> number(QStringView field)
{
    const QByteArray text = field.toUtf8();
    Number value{};
    const auto [end, error] = std::from_chars(text.begin(), text.end(), value);
    return error == std::errc() && end == text.end() ? std::optional(value) : std::nullopt;
}

std::optional<std::pair<qint32, ResourceMonitorService::Statistics>> parseLine(QStringView line)
{
    const QList<QStringView> fields = line.split(u' ', Qt::SkipEmptyParts);
    if (fields.size() < 3)
        return std::nullopt;
    const auto pid = number<qint32>(fields[0]);
    const auto cpu = number<double>(fields[1]);
    const auto kibibytes = number<quint64>(fields[2]);
    if (!pid || !cpu || !std::isfinite(*cpu) || !kibibytes)
        return std::nullopt;
    return std::pair(*pid, ResourceMonitorService::Statistics{*cpu, *kibibytes * bytesPerKibibyte});
}

} // namespace

ResourceMonitorService::ResourceMonitorService(std::shared_ptr<const Workspace> workspace,
                                               std::shared_ptr<const ProcessRunner> processes,
                                               TrafficControlService &trafficControl, QObject *parent)
    : QObject(parent)
    , m_workspace(std::move(workspace))
    , m_runner(std::move(processes))
    , m_trafficControl(trafficControl)
{
    m_timer.setTimerType(Qt::VeryCoarseTimer);
    m_timer.setInterval(refreshInterval);
    connect(&m_timer, &QTimer::timeout, this, &ResourceMonitorService::refreshProcesses);
}

void ResourceMonitorService::startMonitoring()
{
    if (m_isMonitoring)
        return;
    setIsMonitoring(true);
    refreshProcesses();
    m_timer.start();
}

void ResourceMonitorService::stopMonitoring()
{
    setIsMonitoring(false);
    m_timer.stop();
}

void ResourceMonitorService::setIsMonitoring(bool isMonitoring)
{
    m_isMonitoring = isMonitoring;
    Q_EMIT isMonitoringChanged();
}

void ResourceMonitorService::refreshProcesses()
{
    const QList<RunningApplication> applications = m_workspace->runningApplications();
    const QHash<qint32, Statistics> statistics = getSystemProcessStats();
    QList<ResourceProcess> processes;
    processes.reserve(applications.size());
    for (const RunningApplication &application : applications)
        processes.append(process(application, statistics.value(application.processIdentifier)));
    std::ranges::stable_sort(processes, std::ranges::greater(), &ResourceProcess::cpuUsage);
    onMainQueue(QPointer(this), [processes](ResourceMonitorService &service) { service.publish(processes); });
}

void ResourceMonitorService::publish(const QList<ResourceProcess> &processes)
{
    m_processes = processes;
    Q_EMIT processesChanged();
}

ResourceProcess ResourceMonitorService::process(const RunningApplication &application,
                                                const Statistics &statistics) const
{
    ResourceProcess process;
    process.pid = application.processIdentifier;
    process.name = application.localizedName.value_or(u"Unknown"_qs);
    process.path = application.bundleLocation;
    process.cpuUsage = statistics.cpu;
    process.memoryUsage = statistics.memory;
    process.isInternetBlocked = isInternetBlocked(process.name, application.bundleIdentifier);
    process.isSystemProcess = application.bundleIdentifier.value_or(QString()).startsWith(u"com.apple.");
    if (!application.icon.isEmpty())
        process.icon = application.icon;
    process.launchTime = application.launchTime;
    return process;
}

bool ResourceMonitorService::isInternetBlocked(const QString &name,
                                               const std::optional<QString> &bundleIdentifier) const
{
    const bool isIdentified = bundleIdentifier && !bundleIdentifier->isEmpty();
    if (isIdentified && m_trafficControl.blockedBundleIdentifiers().contains(*bundleIdentifier))
        return true;
    if (!isIdentified && m_trafficControl.blockedAppNames().contains(name))
        return true;
    return m_trafficControl.ecoTrafficEnabled() && !TrafficControlService::isEcoAllowed(name, bundleIdentifier);
}

QHash<qint32, ResourceMonitorService::Statistics> ResourceMonitorService::getSystemProcessStats() const
{
    const Command ps = {u"/bin/ps"_qs, {u"-ax"_qs, u"-o"_qs, u"pid,%cpu,rss"_qs}};
    const Result<ProcessOutcome> outcome = m_runner->run(ps);
    if (!outcome) {
        printDiagnostic(u"Failed to run ps: "_qs, outcome.failure());
        return {};
    }
    return parseStatistics(outcome.value().standardOutput);
}

QHash<qint32, ResourceMonitorService::Statistics> ResourceMonitorService::parseStatistics(const QByteArray &output)
{
    QStringDecoder decode(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decode(output);
    if (decode.hasError())
        return {};
    QHash<qint32, Statistics> statistics;
    const QList<QStringView> lines = QStringView(text).split(u'\n');
    // The first line is the header.
    for (qsizetype index = 1; index < lines.size(); ++index) {
        if (const auto parsed = parseLine(lines[index]))
            statistics.insert(parsed->first, parsed->second);
    }
    return statistics;
}

QCoro::Task<std::optional<QString>> ResourceMonitorService::toggleInternetAccess(qint32 pid,
                                                                                 std::optional<quint64> launchTime)
{
    const QPointer self(this);
    auto looking = inBackground([workspace = m_workspace] { return workspace->runningApplications(); });
    const QList<RunningApplication> applications = co_await looking;
    if (!self)
        co_return std::nullopt;
    const std::optional<RunningApplication> application = find(applications, pid, launchTime);
    if (!application || !application->localizedName) {
        refreshProcesses();
        co_return u"The selected process is no longer running."_qs;
    }

    TrafficControlService &trafficControl = m_trafficControl;
    const QString name = *application->localizedName;
    const bool isBlocked = trafficControl.isExplicitlyBlocked(name, application->bundleIdentifier);
    auto setting = trafficControl.setAppTrafficBlocked(!isBlocked, name, application->bundleIdentifier,
                                                       application->bundleLocation);
    const bool isAccepted = co_await setting;
    if (self)
        refreshProcesses();
    if (isAccepted)
        co_return std::nullopt;
    co_return trafficControl.lastError().value_or(u"Unable to change the application outbound traffic policy."_qs);
}

bool ResourceMonitorService::forceQuitProcess(qint32 pid, std::optional<quint64> launchTime)
{
    const std::optional<RunningApplication> application = find(m_workspace->runningApplications(), pid, launchTime);
    return application && m_workspace->forceTerminate(*application);
}

} // namespace Quillmere
