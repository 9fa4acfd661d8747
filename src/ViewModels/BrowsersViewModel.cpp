#include "ViewModels/BrowsersViewModel.h"

#include "Utilities/Attempt.h"
#include "Utilities/BackgroundWork.h"
#include "Utilities/Diagnostics.h"
#include "ViewModels/UnfinishedRuns.h"

#include <tuple>

namespace Quillmere {

namespace {

OperationLog logOf(const BrowserProfile &profile, const CleanupResult &result, const QDateTime &date)
{
    OperationLog log;
    log.date = date;
    log.operationType = OperationType::BrowserCleanup;
    log.foundSize = profile.cacheSize + profile.cookiesSize + profile.historySize + profile.localStorageSize;
    log.cleanedSize = result.sizeCleaned;
    log.filesRemoved = result.filesRemoved;
    log.filesSkipped = result.filesSkipped;
    log.errors = result.errors;
    log.categoriesAffected = {profile.browserName};
    log.status = OperationStatus::Completed;
    return log;
}

} // namespace

BrowsersViewModel::BrowsersViewModel(std::shared_ptr<ScannerService> scanner, BrowserService service,
                                     CleanupService cleaner, HistoryService &history,
                                     std::shared_ptr<const Clock> clock, QObject *parent)
    : QObject(parent)
    , m_scanner(std::move(scanner))
    , m_service(std::move(service))
    , m_cleaner(std::move(cleaner))
    , m_history(history)
    , m_clock(std::move(clock))
{
}

QCoro::Task<> BrowsersViewModel::detectBrowsers()
{
    const std::stop_token task = m_detection.begin();
    m_scanner->resetCancellation();
    setScanning(true, 0.1);

    const QPointer self(this);
    auto detecting = inBackground([service = m_service, scanner = m_scanner, task] {
        return attempted([&] { return service.detectInstalledBrowsers(*scanner, task); });
    });
    const Result<QList<BrowserProfile>> result = co_await detecting;
    if (!result)
        printDiagnostic(u"Browser detection failed: "_qs, result.failure());
    if (!self || !m_detection.isLatest(task))
        co_return;
    if (result)
        m_profiles.setProfiles(result.value());
    setScanning(false, 1.0);
}

QCoro::Task<> BrowsersViewModel::cleanBrowserData(BrowserProfile profile)
{
    setCleaning(true, 0.1);

    // The run outlives the screen, so all that is needed at its end is taken along now.
    std::optional<UnfinishedRuns::Token> unfinished(std::in_place, UnfinishedRuns::shared());
    const QPointer self(this);
    HistoryService &history = m_history;
    const std::shared_ptr<const Clock> clock = m_clock;
    const CleanupService cleaner = m_cleaner;
    auto collecting = inBackground([service = m_service, profile, scope = m_scope] {
        return attempted([&] { return collectedItems(service, profile, scope); });
    });
    const Result<QList<CleanupItem>> items = co_await collecting;
    if (self && items)
        setCleaning(true, 0.5);

    auto cleaning = inBackground([cleaner, items] {
        return items ? attempted([&] { return cleaner.cleanItems(items.value(), false, [](double) {}); })
                     : Result<CleanupResult>(items.failure());
    });
    const Result<CleanupResult> result = co_await cleaning;
    if (result)
        history.save(logOf(profile, result.value(), clock->now()));
    else
        printDiagnostic(u"Failed to clean browser data: "_qs, result.failure());
    // What follows only shows: the program need not wait for it.
    unfinished.reset();
    if (result)
        std::ignore = inBackground([=] { cleaner.synchronize(items.value(), result.value()); });
    if (result && self) {
        const auto detecting = detectBrowsers();
        co_await detecting;
    }
    if (self)
        setCleaning(false, 1.0);
}

QList<CleanupItem> BrowsersViewModel::collectedItems(const BrowserService &service, const BrowserProfile &profile,
                                                     const Scope &scope)
{
    QList<CleanupItem> items;
    if (scope.cache)
        items = service.getBrowserCacheItems(profile);
    if (const auto cookies = scope.cookies ? service.cookiesItem(profile) : std::nullopt)
        items.append(*cookies);
    if (const auto visits = scope.history ? service.historyItem(profile) : std::nullopt)
        items.append(*visits);
    return items;
}

QCoro::Task<> BrowsersViewModel::quitBrowser(BrowserProfile profile)
{
    const QPointer self(this);
    auto asking
        = inBackground([service = m_service, profile] { return service.quitBrowser(profile.bundleIdentifier); });
    const bool isAsked = co_await asking;
    if (self && isAsked)
        m_profiles.setNotRunning(profile.id);
}

void BrowsersViewModel::quit(int row)
{
    if (hasRow(row))
        quitBrowser(m_profiles.profiles().at(row));
}

void BrowsersViewModel::clean(int row)
{
    if (!hasRow(row))
        return;
    const BrowserProfile profile = m_profiles.profiles().at(row);
    if (needsWarning()) {
        m_profileToClean = profile;
        Q_EMIT profileToCleanChanged();
    } else {
        cleanBrowserData(profile);
    }
}

void BrowsersViewModel::confirmCleaning()
{
    const std::optional<BrowserProfile> profile = std::exchange(m_profileToClean, std::nullopt);
    Q_EMIT profileToCleanChanged();
    if (profile)
        cleanBrowserData(*profile);
}

void BrowsersViewModel::dismissCleaning()
{
    m_profileToClean.reset();
    Q_EMIT profileToCleanChanged();
}

void BrowsersViewModel::setCleanCache(bool clean)
{
    setPart(m_scope.cache, clean);
}

void BrowsersViewModel::setCleanCookies(bool clean)
{
    setPart(m_scope.cookies, clean);
}

void BrowsersViewModel::setCleanHistory(bool clean)
{
    setPart(m_scope.history, clean);
}

void BrowsersViewModel::setPart(bool &part, bool clean)
{
    if (std::exchange(part, clean) != clean)
        Q_EMIT scopeChanged();
}

void BrowsersViewModel::setScanning(bool isScanning, double progress)
{
    m_scanProgress = progress;
    m_isScanning = isScanning;
    Q_EMIT progressChanged();
    Q_EMIT phaseChanged();
}

void BrowsersViewModel::setCleaning(bool isCleaning, double progress)
{
    m_cleanProgress = progress;
    m_isCleaning = isCleaning;
    Q_EMIT progressChanged();
    Q_EMIT phaseChanged();
}

} // namespace Quillmere
