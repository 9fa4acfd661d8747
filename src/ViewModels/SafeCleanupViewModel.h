#pragma once

#include "ViewModels/CleanupViewModel.h"

#include <stop_token>

namespace Quillmere {

/// The Safe Cleanup screen: scan the four safe categories, choose among them, move them to the Trash, report, and
/// scan again.
class SafeCleanupViewModel final : public Quillmere::CleanupViewModel
{
    Q_OBJECT
    Q_PROPERTY(bool showsStart READ showsStart NOTIFY phaseChanged)
    Q_PROPERTY(bool isScanComplete READ isScanComplete NOTIFY phaseChanged)

public:
    SafeCleanupViewModel(std::shared_ptr<ScannerService> scanner, CleanupService cleaner, HistoryService &history,
                         std::shared_ptr<const Clock> clock, QObject *parent = nullptr);

    /// Lets a scan under way go on to its end and its date.
    ~SafeCleanupViewModel() override { scanTask().letGo(); }

    /// Nothing has been scanned yet, or the scan was cancelled.
    [[nodiscard]] bool showsStart() const;
    [[nodiscard]] bool isScanComplete() const { return m_isScanComplete; }

    QCoro::Task<> scan() override;

    Q_INVOKABLE void selectAll() { categories()->selectEach(true); }
    /// Ends a scan. A cleanup goes on: this only takes its overlay away, and the report comes all the same.
    Q_INVOKABLE void cancel();

private:
    [[nodiscard]] std::stop_token beginScan();
    void publish(QList<CleanupCategory> found);

    bool m_isScanComplete = false;
};

} // namespace Quillmere
