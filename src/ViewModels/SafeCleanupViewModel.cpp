#include "ViewModels/SafeCleanupViewModel.h"

#include "App/AppState.h"
#include "Utilities/Attempt.h"
#include "Utilities/BackgroundWork.h"
#include "Utilities/Diagnostics.h"
#include "Utilities/LocalizationManager.h"

namespace Quillmere {

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
    const std::stop_token task = beginScan();
    const QPointer self(this);
    const auto progress = [self, task](double fraction, const QString &status) {
        onMainQueue(self, [task, fraction, status](SafeCleanupViewModel &model) {
            if (model.scanTask().isLatest(task))
                model.showProgressOfScan(fraction, status);
        });
    };
    // The scan outlives the screen, so all that is needed at its end is taken along now.
    const std::shared_ptr<ScannerService> scanner = this->scanner();
    const std::shared_ptr<const Clock> clock = this->clock();
    auto scanning = inBackground(
        [scanner, progress, task] { return attempted([&] { return scanner->scanSafeCategories(progress, task); }); });
    const Result<QList<CleanupCategory>> result = co_await scanning;
    if (!result && result.failure().kind != Failure::Kind::Cancelled)
        printDiagnostic(u"Scan error: "_qs, result.failure());
    if (self && !scanTask().isLatest(task))
        co_return;
    const bool isWhole = result && !scanner->isCancelled() && !task.stop_requested();
    if (self && isWhole)
        publish(result.value());
    AppState *const state = AppState::shared();
    if (isWhole && state)
        state->setLastScanDate(clock->now());
    if (self)
        setPhase(false, isCleaning());
}

std::stop_token SafeCleanupViewModel::beginScan()
{
    std::stop_token task = scanTask().begin();
    scanner()->resetCancellation();
    m_isScanComplete = false;
    showProgressOfScan(0, localized(u"cleanup.startingScan"_qs));
    categories()->setCategories({});
    setPhase(true, isCleaning());
    return task;
}

void SafeCleanupViewModel::publish(QList<CleanupCategory> found)
{
    found.removeIf([](const CleanupCategory &category) { return category.totalSize < 1; });
    categories()->setCategories(found);
    m_isScanComplete = true;
}

void SafeCleanupViewModel::cancel()
{
    scanner()->cancelScan();
    scanTask().stop();
    setPhase(false, false);
}

} // namespace Quillmere
