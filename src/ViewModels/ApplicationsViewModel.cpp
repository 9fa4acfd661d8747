#include "ViewModels/ApplicationsViewModel.h"

#include "Utilities/BackgroundWork.h"
#include "Utilities/ByteCountFormatter.h"
#include "Utilities/Diagnostics.h"
#include "Utilities/LocalizationManager.h"
#include "Values/FileName.h"
#include "ViewModels/UnfinishedRuns.h"

#include <algorithm>
#include <ranges>

namespace Quillmere {

namespace {

/// One application of a scan: a bundle, or one that the platform adds.
struct Found
{
    FilePath path;
    std::optional<ListedApplication> listed;

    [[nodiscard]] QString name() const
    {
        return listed ? listed->name : FilePath::displayText(nameWithoutExtension(path));
    }
};

AppItem measured(const ApplicationInventory &inventory, const Found &found, ScannerService &scanner,
                 const std::stop_token &task)
{
    AppItem item = found.listed ? inventory.itemOf(*found.listed) : inventory.itemOf(found.path);
    item.size = found.listed ? inventory.sizeOf(*found.listed, scanner, task)
                             : ApplicationInventory::sizeOf(found.path, scanner, task);
    return item;
}

QList<FilePath> leftoversOf(const ApplicationInventory &inventory, const Found &found, const AppItem &item)
{
    return found.listed ? inventory.findLeftovers(*found.listed)
                        : inventory.findLeftovers(item.bundleIdentifier, nameWithoutExtension(found.path));
}

/// What the desktop and the system know to run.
struct Running
{
    QList<RunningApplication> applications;
    QSet<FilePath> programs;

    [[nodiscard]] bool isAnyOf(const AppItem &app, const QList<FilePath> &parts) const
    {
        const auto isApp = [&](const RunningApplication &each) {
            return (!app.bundleIdentifier.isEmpty() && each.bundleIdentifier == app.bundleIdentifier)
                || (each.bundleLocation && each.bundleLocation->isWithin(app.path));
        };
        const auto isIn = [&](const FilePath &program) {
            return program.isWithin(app.path)
                || std::ranges::any_of(parts, [&](const FilePath &part) { return program.isWithin(part); });
        };
        return std::ranges::any_of(applications, isApp) || std::ranges::any_of(programs, isIn);
    }
};

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
    connect(&Localizer::shared(), &Localizer::languageChanged, this, [this] {
        m_apps.refreshTexts();
        Q_EMIT selectedAppChanged();
    });
}

ApplicationsViewModel::~ApplicationsViewModel()
{
    m_scanTask.request_stop();
}

void ApplicationsViewModel::scanIfEmpty()
{
    if (isEmpty())
        startScan();
}

QCoro::Task<> ApplicationsViewModel::scanApplications()
{
    beginScan();
    const QPointer self(this);
    const std::stop_source task = m_scanTask;
    const std::stop_token token = task.get_token();
    const ApplicationInventory inventory = m_parts.inventory;
    const std::shared_ptr<ScannerService> scanner = m_parts.scanner;
    const auto isOver = [self, token, scanner] {
        return !self || token.stop_requested() || self->m_scanCancelled || scanner->isCancelled();
    };

    QList<Found> found;
    QSet<FilePath> known;
    auto looking = inBackground([inventory] { return inventory.roots(); });
    const QList<FilePath> roots = co_await looking;
    for (const FilePath &root : roots) {
        if (isOver())
            break;
        auto listing = inBackground([inventory, root] { return inventory.bundlesIn(root); });
        const QList<FilePath> bundles = co_await listing;
        for (const FilePath &bundle : bundles) {
            if (!known.contains(bundle))
                found.append({bundle, {}});
            known.insert(bundle);
        }
    }
    if (!isOver()) {
        auto listing = inBackground([inventory] { return inventory.listedApplications(); });
        const QList<ListedApplication> listed = co_await listing;
        for (const ListedApplication &application : listed)
            found.append({application.location, application});
    }

    QList<AppItem> apps;
    QHash<QUuid, ListedApplication> listed;
    for (qsizetype i = 0; i < found.size() && !isOver(); ++i) {
        const Found each = found.at(i);
        self->showProgress(double(i) / double(found.size()), each.name());
        auto measuring = inBackground([=] { return measured(inventory, each, *scanner, token); });
        AppItem item = co_await measuring;
        if (isOver())
            break;
        auto searching = inBackground([=] { return leftoversOf(inventory, each, item); });
        item.relatedFiles = co_await searching;
        for (const FilePath &leftover : std::as_const(item.relatedFiles)) {
            if (isOver())
                break;
            auto adding = inBackground([=] { return ApplicationInventory::sizeOf(leftover, *scanner, token); });
            const qint64 size = co_await adding;
            item.size += size;
        }
        apps.append(item);
        if (each.listed)
            listed.insert(item.id, *each.listed);
    }
    if (!self)
        co_return;
    if (!isOver() && !found.isEmpty())
        publish(apps, listed);
    leaveScan(task);
}

void ApplicationsViewModel::beginScan()
{
    m_scanTask.request_stop();
    m_scanTask = {};
    m_parts.scanner->resetCancellation();
    m_scanCancelled = false;
    m_isScanning = true;
    showProgress(0, Localizer::shared().localized(u"applications.listing"_qs));
    m_apps.setApps({});
    Q_EMIT appsChanged();
    Q_EMIT selectedAppChanged();
    Q_EMIT phaseChanged();
}

void ApplicationsViewModel::leaveScan(const std::stop_source &task)
{
    if (m_scanTask != task)
        return;
    m_isScanning = false;
    Q_EMIT phaseChanged();
}

void ApplicationsViewModel::publish(QList<AppItem> apps, QHash<QUuid, ListedApplication> listed)
{
    std::ranges::stable_sort(apps, std::ranges::greater(), &AppItem::size);
    m_apps.setApps(apps);
    // What is on the right goes on being the same application, by what is known of it now.
    // Nothing says what becomes of it at a scan, and people expect it to stay.
    std::optional<AppItem> selected = m_selectedApp;
    if (selected) {
        const auto same = std::ranges::find(apps, selected->path, &AppItem::path);
        if (same != apps.end())
            selected = *same;
        else if (const std::optional<ListedApplication> application = listedApplication(*selected))
            listed.insert(selected->id, *application);
    }
    m_listed = std::move(listed);
    Q_EMIT appsChanged();
    setSelectedApp(selected);
    refreshRunning();
}

void ApplicationsViewModel::cancelScan()
{
    m_scanCancelled = true;
    m_parts.scanner->cancelScan();
    // The scan itself comes to its next test only when whoever it asks has answered.
    if (m_isScanning)
        leaveScan(m_scanTask);
}

QCoro::Task<> ApplicationsViewModel::refreshRunning()
{
    const QPointer self(this);
    const int look = ++m_looks;
    auto asking = inBackground([workspace = m_parts.workspace] {
        return Running{workspace->runningApplications(), workspace->runningPrograms()};
    });
    const Running running = co_await asking;
    if (!self || look != m_looks)
        co_return;
    QSet<QUuid> ids;
    for (const AppItem &app : m_apps.apps()) {
        if (running.isAnyOf(app, m_listed.value(app.id).parts))
            ids.insert(app.id);
    }
    m_apps.setRunning(ids);
    Q_EMIT runningChanged();
}

QCoro::Task<> ApplicationsViewModel::uninstallApp(AppItem app)
{
    setIsUninstalling(true);
    // The run outlives the screen, so all that is needed at its end is taken along now.
    const UnfinishedRuns::Token unfinished(UnfinishedRuns::shared());
    const QPointer self(this);
    const ApplicationInventory inventory = m_parts.inventory;
    const std::shared_ptr<const Clock> clock = m_parts.clock;
    HistoryService &history = m_parts.history;
    const std::optional<ListedApplication> listed = listedApplication(app);
    auto removing = inBackground([=] { return listed ? inventory.uninstall(app, *listed) : inventory.uninstall(app); });
    const Result<void> outcome = co_await removing;
    if (!outcome) {
        printDiagnostic(u"Uninstall error: "_qs, outcome.failure());
        if (self)
            setIsUninstalling(false);
        co_return;
    }
    if (self) {
        m_apps.remove(app.id);
        m_listed.remove(app.id);
        Q_EMIT appsChanged();
    }
    history.save(logOf(app.size, app.relatedFiles.size() + 1, *clock));
    if (!self)
        co_return;
    setSelectedApp({});
    setIsUninstalling(false);
}

QCoro::Task<> ApplicationsViewModel::clearAppData(AppItem app)
{
    setIsUninstalling(true);
    const UnfinishedRuns::Token unfinished(UnfinishedRuns::shared());
    const QPointer self(this);
    const ApplicationInventory inventory = m_parts.inventory;
    const std::shared_ptr<const Clock> clock = m_parts.clock;
    HistoryService &history = m_parts.history;
    const std::optional<ListedApplication> listed = listedApplication(app);
    auto clearing = inBackground([=] { return inventory.clearData(app); });
    const Result<ApplicationInventory::Cleared> cleared = co_await clearing;
    if (!cleared) {
        printDiagnostic(u"Clear app data error: "_qs, cleared.failure());
        if (self)
            setIsUninstalling(false);
        co_return;
    }
    auto measuring = inBackground([=] {
        const std::unique_ptr<ScannerService> scanner = inventory.makeScanner();
        return listed ? inventory.sizeOf(*listed, *scanner) : ApplicationInventory::sizeOf(app.path, *scanner);
    });
    const qint64 ownSize = co_await measuring;
    if (self) {
        if (const int row = m_apps.rowOf(app.id); row >= 0) {
            AppItem kept = m_apps.apps().at(row);
            kept.relatedFiles.clear();
            kept.size = ownSize;
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
        toggleTrafficBlock(*m_selectedApp);
}

std::optional<ListedApplication> ApplicationsViewModel::listedApplication(const AppItem &app) const
{
    const auto found = m_listed.constFind(app.id);
    return found == m_listed.constEnd() ? std::nullopt : std::optional(*found);
}

bool ApplicationsViewModel::canUninstallSelected() const
{
    const auto listed = m_selectedApp ? listedApplication(*m_selectedApp) : std::nullopt;
    return m_selectedApp && (!listed || listed->removal != ApplicationRemoval::System);
}

QString ApplicationsViewModel::selectedVersionText() const
{
    const Localizer &texts = Localizer::shared();
    if (!m_selectedApp)
        return {};
    return texts.localized(u"applications.version"_qs) + u": "_qs
        + m_selectedApp->version.value_or(texts.localized(u"applications.unknown"_qs));
}

QString ApplicationsViewModel::selectedSizeText() const
{
    return m_selectedApp ? formatByteCount(m_selectedApp->size) : QString();
}

QStringList ApplicationsViewModel::selectedFileNames() const
{
    QStringList names;
    for (const FilePath &file : m_selectedApp ? m_selectedApp->relatedFiles : QList<FilePath>())
        names.append(FilePath::displayText(file.lastPathComponent()));
    return names;
}

QStringList ApplicationsViewModel::selectedFilePaths() const
{
    QStringList paths;
    for (const FilePath &file : m_selectedApp ? m_selectedApp->relatedFiles : QList<FilePath>())
        paths.append(file.displayText());
    return paths;
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

void ApplicationsViewModel::setSelectedApp(const std::optional<AppItem> &app)
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
