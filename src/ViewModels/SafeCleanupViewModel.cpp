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
    auto scanning = inBackground([scanner = scanner(), progress, task] {
        return attempted([&] { return scanner->scanSafeCategories(progress, task); });
    });
    const Result<QList<CleanupCategory>> result = co_await scanning;
    if (self && scanTask().isLatest(task))
        endScan(result);
}

std::stop_token SafeCleanupViewModel::beginScan()
{
    std::stop_token task = scanTask().begin();
    scanner()->resetCancellation();
    m_isScanComplete = false;
    showProgressOfScan(0, Localizer::shared().localized(u"cleanup.startingScan"_qs));
    categories()->setCategories({});
    setPhase(true, isCleaning());
    return task;
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
    scanTask().stop();
    setPhase(false, false);
}

} // namespace Quillmere
