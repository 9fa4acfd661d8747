#include "ViewModels/SafeCleanupViewModel.h"

#include "App/AppState.h"
#include "Utilities/BackgroundWork.h"
#include "Utilities/ByteCountFormatter.h"
#include "Utilities/Diagnostics.h"
#include "Utilities/LocalizationManager.h"
#include "Values/CancellationError.h"
#include "ViewModels/UnfinishedRuns.h"

#include <algorithm>

namespace Quillmere {

namespace {

Result<QList<CleanupCategory>> scanned(ScannerService &scanner, const ScannerService::Progress &progress,
                                       const std::stop_token &task)
{
    try {
        return scanner.scanSafeCategories(progress, task);
    } catch (const CancellationError &) {
        return Failure{Failure::Kind::Cancelled, {}, {}};
    } catch (const std::exception &error) {
        return Failure{Failure::Kind::Other, {}, QString::fromUtf8(error.what())};
    }
}

Result<CleanupResult> cleaned(const CleanupService &cleaner, const QList<CleanupItem> &items,
                              const CleanupService::Progress &progress)
{
    try {
        return cleaner.cleanItems(items, true, progress);
    } catch (const std::exception &error) {
        return Failure{Failure::Kind::Other, {}, QString::fromUtf8(error.what())};
    }
}

} // namespace

SafeCleanupViewModel::SafeCleanupViewModel(std::shared_ptr<ScannerService> scanner, CleanupService cleaner,
                                           HistoryService &history, std::shared_ptr<const Clock> clock, QObject *parent)
    : QObject(parent)
    , m_scanner(std::move(scanner))
    , m_cleaner(std::move(cleaner))
    , m_history(history)
    , m_clock(std::move(clock))
{
    connect(&m_categories, &CleanupCategoryListModel::selectionChanged, this, &SafeCleanupViewModel::selectionChanged);
    connect(&Localizer::shared(), &Localizer::languageChanged, this, [this] {
        Q_EMIT selectionChanged();
        Q_EMIT cleanupResultChanged();
    });
}

bool SafeCleanupViewModel::showsStart() const
{
    return m_categories.categories().isEmpty() && !m_isScanComplete;
}

QString SafeCleanupViewModel::totalSelectedText() const
{
    return formatByteCount(totalSelectedSize());
}

CleanupReport SafeCleanupViewModel::report() const
{
    return m_resultWrapper ? CleanupReport(m_resultWrapper->result) : CleanupReport();
}

QCoro::Task<> SafeCleanupViewModel::scan()
{
    beginScan();
    const QPointer self(this);
    const std::stop_source task = m_scanTask;
    const auto progress = [self, task](double fraction, const QString &status) {
        onMainQueue(self, [task, fraction, status](SafeCleanupViewModel &model) {
            if (model.m_scanTask == task)
                model.showProgressOfScan(fraction, status);
        });
    };
    auto scanning = inBackground(
        [scanner = m_scanner, progress, token = task.get_token()] { return scanned(*scanner, progress, token); });
    const Result<QList<CleanupCategory>> result = co_await scanning;
    if (self && m_scanTask == task)
        endScan(result);
}

void SafeCleanupViewModel::beginScan()
{
    m_scanTask.request_stop();
    m_scanTask = {};
    m_scanner->resetCancellation();
    m_isScanning = true;
    m_isScanComplete = false;
    showProgressOfScan(0, Localizer::shared().localized(u"cleanup.startingScan"_qs));
    m_categories.setCategories({});
    Q_EMIT phaseChanged();
}

void SafeCleanupViewModel::endScan(const Result<QList<CleanupCategory>> &result)
{
    if (result && !m_scanner->isCancelled()) {
        QList<CleanupCategory> found = result.value();
        found.removeIf([](const CleanupCategory &category) { return category.totalSize < 1; });
        m_categories.setCategories(found);
        m_isScanComplete = true;
        if (AppState *state = AppState::shared())
            state->setLastScanDate(m_clock->now());
    } else if (!result && result.failure().kind != Failure::Kind::Cancelled) {
        printDiagnostic(u"Scan error: "_qs, result.failure());
    }
    m_isScanning = false;
    Q_EMIT phaseChanged();
}

QCoro::Task<> SafeCleanupViewModel::clean()
{
    const QList<CleanupItem> items = selectedItems();
    if (items.isEmpty())
        co_return;
    m_isCleaning = true;
    showProgressOfCleanup(0);
    Q_EMIT phaseChanged();

    // The run outlives the screen, so all that is needed at its end is taken along now.
    const UnfinishedRuns::Token unfinished(UnfinishedRuns::shared());
    const QPointer self(this);
    HistoryService &history = m_history;
    const std::shared_ptr<const Clock> clock = m_clock;
    OperationLog log = logOfSelection();
    const int run = ++m_cleanupRuns;
    const auto progress = [self, run](double fraction) {
        onMainQueue(self, [run, fraction](SafeCleanupViewModel &model) {
            if (run == model.m_cleanupRuns)
                model.showProgressOfCleanup(fraction);
        });
    };
    auto cleaning = inBackground([cleaner = m_cleaner, items, progress] { return cleaned(cleaner, items, progress); });
    const Result<CleanupResult> outcome = co_await cleaning;
    if (self && run == m_cleanupRuns)
        m_isCleaning = false;
    if (!outcome) {
        printDiagnostic(u"Cleanup error: "_qs, outcome.failure());
        if (self)
            Q_EMIT phaseChanged();
        co_return;
    }

    const CleanupResult result = outcome.value();
    log.date = clock->now();
    log.cleanedSize = result.sizeCleaned;
    log.filesRemoved = result.filesRemoved;
    log.filesSkipped = result.filesSkipped;
    log.errors = result.errors;
    history.save(log);
    if (AppState *state = AppState::shared())
        state->setLastCleanupDate(clock->now());
    if (!self)
        co_return;
    m_resultWrapper = CleanupResultWrapper{QUuid::createUuid(), result};
    Q_EMIT cleanupResultChanged();
    Q_EMIT phaseChanged();
}

QList<CleanupItem> SafeCleanupViewModel::selectedItems() const
{
    QList<CleanupItem> items;
    for (const CleanupCategory &category : m_categories.categories()) {
        if (category.isSelected)
            items += category.items;
    }
    return items;
}

OperationLog SafeCleanupViewModel::logOfSelection() const
{
    OperationLog log;
    for (const CleanupCategory &category : m_categories.categories()) {
        log.foundSize += category.totalSize;
        if (category.isSelected)
            log.categoriesAffected.append(category.name);
    }
    return log;
}

void SafeCleanupViewModel::cancel()
{
    m_scanner->cancelScan();
    m_scanTask.request_stop();
    m_isScanning = false;
    m_isCleaning = false;
    Q_EMIT phaseChanged();
}

void SafeCleanupViewModel::dismissReport()
{
    m_resultWrapper.reset();
    Q_EMIT cleanupResultChanged();
    startScan();
}

void SafeCleanupViewModel::showProgressOfScan(double fraction, const QString &status)
{
    m_scanProgress = fraction;
    m_scanStatus = status;
    Q_EMIT progressChanged();
}

void SafeCleanupViewModel::showProgressOfCleanup(double fraction)
{
    m_cleanupProgress = fraction;
    Q_EMIT progressChanged();
}

} // namespace Quillmere
