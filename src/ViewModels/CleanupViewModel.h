#pragma once

#include "Models/CleanupResult.h"
#include "Models/OperationLog.h"
#include "Platform/Clock.h"
#include "Services/CleanupService.h"
#include "Services/HistoryService.h"
#include "Services/ScannerService.h"
#include "ViewModels/CleanupCategoryListModel.h"
#include "ViewModels/CleanupReport.h"
#include "ViewModels/LatestTask.h"

#include <QObject>

#include <QCoro/QCoroTask>

#include <optional>

namespace Quillmere {

/// What the cleanup screens have in common: choose among the categories that a scan has found, move them to the Trash,
/// report, and scan again. A cleanup goes on to its end and is recorded even when the screen has gone.
/// Whoever derives from it names it in full, with the namespace: QML's tools know a base by no other name.
class CleanupViewModel : public QObject
{
    Q_OBJECT
    Q_PROPERTY(Quillmere::CleanupCategoryListModel *categories READ categories CONSTANT)
    Q_PROPERTY(bool isScanning READ isScanning NOTIFY phaseChanged)
    Q_PROPERTY(bool isCleaning READ isCleaning NOTIFY phaseChanged)
    Q_PROPERTY(double scanProgress READ scanProgress NOTIFY progressChanged)
    Q_PROPERTY(QString scanStatus READ scanStatus NOTIFY progressChanged)
    Q_PROPERTY(double cleanupProgress READ cleanupProgress NOTIFY progressChanged)
    Q_PROPERTY(bool canClean READ canClean NOTIFY selectionChanged)
    Q_PROPERTY(QString totalSelectedText READ totalSelectedText NOTIFY selectionChanged)
    Q_PROPERTY(bool hasReport READ hasReport NOTIFY cleanupResultChanged)
    Q_PROPERTY(Quillmere::CleanupReport report READ report NOTIFY cleanupResultChanged)

public:
    [[nodiscard]] CleanupCategoryListModel *categories() { return &m_categories; }
    [[nodiscard]] const CleanupCategoryListModel *categories() const { return &m_categories; }
    [[nodiscard]] bool isScanning() const { return m_isScanning; }
    [[nodiscard]] bool isCleaning() const { return m_isCleaning; }
    [[nodiscard]] double scanProgress() const { return m_scanProgress; }
    [[nodiscard]] QString scanStatus() const { return m_scanStatus; }
    [[nodiscard]] double cleanupProgress() const { return m_cleanupProgress; }
    [[nodiscard]] qint64 totalSelectedSize() const { return m_categories.totalSelectedSize(); }
    [[nodiscard]] QString totalSelectedText() const;
    [[nodiscard]] bool canClean() const { return totalSelectedSize() != 0; }
    [[nodiscard]] const std::optional<CleanupResultWrapper> &cleanupResultWrapper() const { return m_resultWrapper; }
    [[nodiscard]] bool hasReport() const { return m_resultWrapper.has_value(); }
    [[nodiscard]] CleanupReport report() const;

    // Started and left to themselves; whoever wants to know when they end awaits them.
    virtual QCoro::Task<> scan() = 0;
    QCoro::Task<> clean();

    Q_INVOKABLE void startScan() { scan(); }
    Q_INVOKABLE void startCleanup() { clean(); }
    Q_INVOKABLE void deselectAll() { m_categories.selectEach(false); }
    /// Puts the report away and scans anew, so that the list shows the disk as it now is.
    Q_INVOKABLE void dismissReport();

Q_SIGNALS:
    void phaseChanged();
    void progressChanged();
    void selectionChanged();
    void cleanupResultChanged();

protected:
    /// What tells the runs of one screen from those of another.
    struct RunHabits
    {
        QString failureText; ///< Begins the line that is printed when a run fails.
        bool setsCleanupDate = false; ///< Of the shared state, where there is one.
    };

    CleanupViewModel(std::shared_ptr<ScannerService> scanner, CleanupService cleaner, HistoryService &history,
                     std::shared_ptr<const Clock> clock, RunHabits habits, QObject *parent);

    void setPhase(bool isScanning, bool isCleaning);
    void showProgressOfScan(double fraction, const QString &status);

    [[nodiscard]] const std::shared_ptr<ScannerService> &scanner() const { return m_scanner; }
    [[nodiscard]] LatestTask &scanTask() { return m_scanTask; }
    [[nodiscard]] const std::shared_ptr<const Clock> &clock() const { return m_clock; }

private:
    [[nodiscard]] QList<CleanupItem> selectedItems() const;
    [[nodiscard]] OperationLog logOfSelection() const;
    void showProgressOfCleanup(double fraction);

    std::shared_ptr<ScannerService> m_scanner;
    CleanupService m_cleaner;
    HistoryService &m_history;
    std::shared_ptr<const Clock> m_clock;
    RunHabits m_habits;
    CleanupCategoryListModel m_categories{nullptr};
    LatestTask m_scanTask;
    LatestTask m_cleanup; ///< An earlier one that ends late leaves the overlay of a later one.
    bool m_isScanning = false;
    bool m_isCleaning = false;
    double m_scanProgress = 0;
    QString m_scanStatus;
    double m_cleanupProgress = 0;
    std::optional<CleanupResultWrapper> m_resultWrapper;
};

} // namespace Quillmere
