#include "ViewModels/SafeCleanupViewModel.h"

#include "App/AppState.h"
#include "Utilities/BackgroundWork.h"
#include "Utilities/Diagnostics.h"
#include "Utilities/LocalizationManager.h"
#include "Values/CancellationError.h"

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

} // namespace

SafeCleanupViewModel::SafeCleanupViewModel(std::shared_ptr<ScannerService> scanner, CleanupService cleaner,
                                           HistoryService &history, std::shared_ptr<const Clock> clock, QObject *parent)
    : CleanupViewModel(std::move(scanner), std::move(cleaner), history, std::move(clock), {u"Cleanup error: "_qs, true},
                       parent)
{
}

bool SafeCleanupViewModel::showsStart() const
{
    return categories()->categories().isEmpty() && !m_isScanComplete;
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
        [scanner = scanner(), progress, token = task.get_token()] { return scanned(*scanner, progress, token); });
    const Result<QList<CleanupCategory>> result = co_await scanning;
    if (self && m_scanTask == task)
        endScan(result);
}

void SafeCleanupViewModel::beginScan()
{
    m_scanTask.request_stop();
    m_scanTask = {};
    scanner()->resetCancellation();
    m_isScanComplete = false;
    showProgressOfScan(0, Localizer::shared().localized(u"cleanup.startingScan"_qs));
    categories()->setCategories({});
    setPhase(true, isCleaning());
}

void SafeCleanupViewModel::endScan(const Result<QList<CleanupCategory>> &result)
{
    if (result && !scanner()->isCancelled()) {
        QList<CleanupCategory> found = result.value();
        found.removeIf([](const CleanupCategory &category) { return category.totalSize < 1; });
        categories()->setCategories(found);
        m_isScanComplete = true;
        if (AppState *state = AppState::shared())
            state->setLastScanDate(clock().now());
    } else if (!result && result.failure().kind != Failure::Kind::Cancelled) {
        printDiagnostic(u"Scan error: "_qs, result.failure());
    }
    setPhase(false, isCleaning());
}

void SafeCleanupViewModel::cancel()
{
    scanner()->cancelScan();
    m_scanTask.request_stop();
    setPhase(false, false);
}

} // namespace Quillmere
