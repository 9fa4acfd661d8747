#pragma once

#include "Services/DeveloperStorageService.h"
#include "ViewModels/CleanupViewModel.h"

#include <QFuture>
#include <QPointer>

#include <stop_token>

namespace Quillmere {

/// The Professional Cleanup screen: the storage of development tools, what of them is installed, the system's caches
/// and the mail's downloads. What a scan has found so far is there at once, and stays when the scan is cancelled.
class ProfessionalCleanupViewModel final : public Quillmere::CleanupViewModel
{
    Q_OBJECT
    Q_PROPERTY(bool showsStart READ showsStart NOTIFY phaseChanged)
    Q_PROPERTY(bool showsList READ showsList NOTIFY phaseChanged)

public:
    ProfessionalCleanupViewModel(std::shared_ptr<ScannerService> scanner, DeveloperStorageService developerStorage,
                                 CleanupService cleaner, HistoryService &history,
                                 std::shared_ptr<const FileManager> files, std::shared_ptr<const Clock> clock,
                                 QObject *parent = nullptr);

    /// Ends a scan under way, of which nothing would stay.
    ~ProfessionalCleanupViewModel() override { scanner()->cancelScan(); }

    /// There is nothing to see, and nothing is on its way.
    [[nodiscard]] bool showsStart() const { return !showsList() && !isScanning(); }
    [[nodiscard]] bool showsList() const { return !categories()->categories().isEmpty(); }

    QCoro::Task<> scan() override;

    /// All but what is only there to be looked at.
    Q_INVOKABLE void selectAll() { categories()->selectAvailable(); }
    /// Asks a scan to end, which it does when it notices. A cleanup goes on to its end all the same.
    Q_INVOKABLE void cancel() { scanner()->cancelScan(); }

private:
    struct WholeFolder;

    [[nodiscard]] QFuture<qint64> measuring(const FilePath &folder, const std::stop_token &task) const;
    [[nodiscard]] std::stop_token beginScan();
    /// Whether @p model is still there and its scan of @p task goes on. One that was cancelled ends here.
    [[nodiscard]] static bool goesOn(const QPointer<ProfessionalCleanupViewModel> &model, const std::stop_token &task);
    void append(const QList<CleanupCategory> &found);
    void appendWhole(const WholeFolder &folder, qint64 size);

    DeveloperStorageService m_developerStorage;
    std::shared_ptr<const FileManager> m_files;
};

} // namespace Quillmere
