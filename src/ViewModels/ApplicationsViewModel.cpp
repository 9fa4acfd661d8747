#include "ViewModels/ApplicationsViewModel.h"

#include "Utilities/BackgroundWork.h"
#include "Utilities/Diagnostics.h"
#include "Utilities/LocalizationManager.h"
#include "ViewModels/ApplicationScan.h"
#include "ViewModels/RunningPrograms.h"
#include "ViewModels/UnfinishedRuns.h"

#include <algorithm>
#include <ranges>

namespace Quillmere {

namespace {

OperationLog logOf(qint64 size, qint64 count, const Clock &clock)
{
    OperationLog log;
    log.date = clock.now();
    log.operationType = OperationType::SafeCleanup;
    log.foundSize = size;
    log.cleanedSize = size;
    log.filesRemoved = count;
    return log;
}

} // namespace

ApplicationsViewModel::ApplicationsViewModel(Parts parts, QObject *parent)
    : QObject(parent)
    , m_parts(std::move(parts))
{
    const TrafficControlService *traffic = &m_parts.trafficControl;
    connect(traffic, &TrafficControlService::blockedAppsChanged, this, &ApplicationsViewModel::trafficChanged);
    connect(traffic, &TrafficControlService::ecoTrafficEnabledChanged, this, &ApplicationsViewModel::trafficChanged);
    connect(&Localizer::shared(), &Localizer::languageChanged, this, &ApplicationsViewModel::selectedAppChanged);
}

void ApplicationsViewModel::scanIfEmpty()
{
    if (isEmpty())
        startScan();
}

QCoro::Task<> ApplicationsViewModel::scanApplications()
{
    const std::stop_token task = beginScan();
    const QPointer self(this);
    const ApplicationScan scan(m_parts.inventory, m_parts.scanner, task);
    auto listing = ApplicationScan::list(scan);
    const QList<FoundApplication> found = co_await listing;
    auto measuring = ApplicationScan::measure(scan, found, [self](double fraction, const QString &name) {
        if (self)
            self->showProgress(fraction, name);
    });
    const QList<FoundApplication> apps = co_await measuring;
    if (!self)
        co_return;
    if (!scan.isOver() && !apps.isEmpty())
        publish(apps);
    leaveScan(task);
}

std::stop_token ApplicationsViewModel::beginScan()
{
    std::stop_token task = m_scanTask.begin();
    m_parts.scanner->resetCancellation();
    m_isScanning = true;
    showProgress(0, localized(u"applications.listing"_qs));
    m_apps.setApps({});
    Q_EMIT appsChanged();
    Q_EMIT selectedAppChanged();
    Q_EMIT phaseChanged();
    return task;
}

void ApplicationsViewModel::leaveScan(const std::stop_token &task)
{
    if (!m_scanTask.isLatest(task))
        return;
    m_isScanning = false;
    Q_EMIT phaseChanged();
}

void ApplicationsViewModel::publish(QList<FoundApplication> apps)
{
    std::ranges::stable_sort(apps, std::ranges::greater(), [](const FoundApplication &app) { return app.item.size; });
    m_apps.setApps(apps);
    // What is on the right goes on being the same application, by what is known of it now.
    // Nothing says what becomes of it at a scan, and people expect it to stay.
    std::optional<FoundApplication> selected = m_selectedApp;
    const auto same = std::ranges::find_if(
        apps, [&](const FoundApplication &app) { return selected && app.item.path == selected->item.path; });
    if (same != apps.end())
        selected = *same;
    Q_EMIT appsChanged();
    setSelectedApp(selected);
    refreshRunning();
}

void ApplicationsViewModel::cancelScan()
{
    m_scanTask.stop();
    m_parts.scanner->cancelScan();
    // The scan itself comes to its next test only when whoever it asks has answered.
    if (m_isScanning)
        leaveScan(m_scanTask.token());
}

QCoro::Task<> ApplicationsViewModel::refreshRunning()
{
    const QPointer self(this);
    const std::stop_token look = m_look.begin();
    auto asking = inBackground([workspace = m_parts.workspace] { return RunningPrograms::of(*workspace); });
    const RunningPrograms running = co_await asking;
    if (!self || !m_look.isLatest(look))
        co_return;
    QSet<QUuid> ids;
    for (const FoundApplication &app : m_apps.apps()) {
        if (running.isAnyOf(app))
            ids.insert(app.item.id);
    }
    m_apps.setRunning(ids);
    Q_EMIT runningChanged();
}

QCoro::Task<> ApplicationsViewModel::uninstallApp(FoundApplication app)
{
    setIsUninstalling(true);
    // The run outlives the screen, so all that is needed at its end is taken along now.
    const UnfinishedRuns::Token unfinished(UnfinishedRuns::shared());
    const QPointer self(this);
    const ApplicationInventory inventory = m_parts.inventory;
    const std::shared_ptr<const Clock> clock = m_parts.clock;
    HistoryService &history = m_parts.history;
    auto removing = inBackground([=] { return inventory.uninstall(app); });
    const Result<void> outcome = co_await removing;
    if (!outcome) {
        printDiagnostic(u"Uninstall error: "_qs, outcome.failure());
        if (self)
            setIsUninstalling(false);
        co_return;
    }
    if (self) {
        m_apps.remove(app.item.id);
        Q_EMIT appsChanged();
    }
    history.save(logOf(app.item.size, app.item.relatedFiles.size() + 1, *clock));
    if (!self)
        co_return;
    setSelectedApp({});
    setIsUninstalling(false);
}

QCoro::Task<> ApplicationsViewModel::clearAppData(FoundApplication app)
{
    setIsUninstalling(true);
    const UnfinishedRuns::Token unfinished(UnfinishedRuns::shared());
    const QPointer self(this);
    const ApplicationInventory inventory = m_parts.inventory;
    const std::shared_ptr<const Clock> clock = m_parts.clock;
    HistoryService &history = m_parts.history;
    auto clearing = inBackground([=] { return inventory.clearData(app.item); });
    const Result<ApplicationInventory::Cleared> cleared = co_await clearing;
    if (!cleared) {
        printDiagnostic(u"Clear app data error: "_qs, cleared.failure());
        if (self)
            setIsUninstalling(false);
        co_return;
    }
    auto measuring = inBackground([=] {
        const std::unique_ptr<ScannerService> scanner = inventory.makeScanner();
        return inventory.sizeOf(app, *scanner);
    });
    const qint64 ownSize = co_await measuring;
    if (self) {
        if (const int row = m_apps.rowOf(app.item.id); row >= 0) {
            FoundApplication kept = m_apps.apps().at(row);
            kept.item.relatedFiles.clear();
            kept.item.size = ownSize;
            m_apps.replace(kept);
            setSelectedApp(kept);
        }
    }
    history.save(logOf(cleared.value().size, cleared.value().count, *clock));
    if (self)
        setIsUninstalling(false);
}

QCoro::Task<> ApplicationsViewModel::toggleTrafficBlock(AppItem app)
{
    setTrafficErrorMessage({});
    const QPointer self(this);
    TrafficControlService &traffic = m_parts.trafficControl;
    const bool isBlocked = traffic.isExplicitlyBlocked(app.name, app.bundleIdentifier);
    auto setting = traffic.setAppTrafficBlocked(!isBlocked, app.name, app.bundleIdentifier, app.path);
    const bool isDone = co_await setting;
    if (!self)
        co_return;
    if (!isDone) {
        setTrafficErrorMessage(
            traffic.lastError().value_or(u"Unable to change the application outbound traffic policy."_qs));
    }
    Q_EMIT trafficChanged();
}

bool ApplicationsViewModel::isTrafficBlocked(const AppItem &app) const
{
    const TrafficControlService &traffic = m_parts.trafficControl;
    if (traffic.isExplicitlyBlocked(app.name, app.bundleIdentifier))
        return true;
    return traffic.ecoTrafficEnabled() && !TrafficControlService::isEcoAllowed(app.name, app.bundleIdentifier);
}

void ApplicationsViewModel::select(int row)
{
    if (row < 0 || row >= m_apps.apps().size())
        return;
    setSelectedApp(m_apps.apps().at(row));
    refreshRunning();
}

void ApplicationsViewModel::uninstallSelected()
{
    // A second click on a question that is just going asks for nothing new.
    if (m_selectedApp && !m_isUninstalling)
        uninstallApp(*m_selectedApp);
}

void ApplicationsViewModel::clearSelected()
{
    if (m_selectedApp && !m_isUninstalling)
        clearAppData(*m_selectedApp);
}

void ApplicationsViewModel::toggleSelectedTraffic()
{
    if (m_selectedApp)
        toggleTrafficBlock(m_selectedApp->item);
}

std::optional<AppItem> ApplicationsViewModel::selectedApp() const
{
    return m_selectedApp ? std::optional(m_selectedApp->item) : std::nullopt;
}

void ApplicationsViewModel::showProgress(double fraction, const QString &name)
{
    m_scanProgress = fraction;
    m_currentScanningApp = name;
    Q_EMIT progressChanged();
}

void ApplicationsViewModel::setIsUninstalling(bool isUninstalling)
{
    m_isUninstalling = isUninstalling;
    Q_EMIT phaseChanged();
}

void ApplicationsViewModel::setSelectedApp(const std::optional<FoundApplication> &app)
{
    m_selectedApp = app;
    Q_EMIT selectedAppChanged();
    Q_EMIT runningChanged();
    Q_EMIT trafficChanged();
}

void ApplicationsViewModel::setTrafficErrorMessage(const std::optional<QString> &message)
{
    m_trafficErrorMessage = message;
    Q_EMIT trafficErrorMessageChanged();
}

} // namespace Quillmere
