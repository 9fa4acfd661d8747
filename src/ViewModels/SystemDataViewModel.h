#pragma once

#include "Services/ScannerService.h"
#include "ViewModels/LatestTask.h"
#include "ViewModels/SystemCategoryListModel.h"

#include <QObject>

#include <QCoro/QCoroTask>

#include <array>
#include <stop_token>

namespace Quillmere {

/// The System Data screen: how the start-up volume divides into what was measured, what is free, and the rest. It
/// removes nothing. A scan ends with the screen.
class SystemDataViewModel final : public QObject
{
    Q_OBJECT
    Q_PROPERTY(Quillmere::SystemCategoryListModel *storageItems READ storageItems CONSTANT)
    Q_PROPERTY(bool showsStart READ showsStart NOTIFY phaseChanged)
    Q_PROPERTY(bool isScanning READ isScanning NOTIFY phaseChanged)
    Q_PROPERTY(double scanProgress READ scanProgress NOTIFY progressChanged)
    Q_PROPERTY(QString totalCapacityText READ totalCapacityText NOTIFY capacityChanged)

public:
    SystemDataViewModel(std::shared_ptr<ScannerService> scanner, std::shared_ptr<const FileManager> files,
                        std::shared_ptr<const Places> places, QObject *parent = nullptr);

    [[nodiscard]] SystemCategoryListModel *storageItems() { return &m_storageItems; }
    /// Nothing has been scanned yet, or the scan was cancelled.
    [[nodiscard]] bool showsStart() const { return m_storageItems.items().isEmpty() && !m_isScanning; }
    [[nodiscard]] bool isScanning() const { return m_isScanning; }
    [[nodiscard]] double scanProgress() const { return m_scanProgress; }
    [[nodiscard]] qint64 totalDiskSize() const { return m_totalDiskSize; }
    [[nodiscard]] qint64 freeDiskSize() const { return m_freeDiskSize; }
    [[nodiscard]] QString totalCapacityText() const;

    /// Started and left to itself; whoever wants to know when it ends awaits it.
    QCoro::Task<> scanStorage();

    Q_INVOKABLE void startScan() { scanStorage(); }
    /// The screen has come into sight: a list that is filled already stays as it is.
    Q_INVOKABLE void appear();
    Q_INVOKABLE void cancelScan();

Q_SIGNALS:
    void phaseChanged();
    void progressChanged();
    void capacityChanged();

private:
    /// A category whose folders are walked.
    struct MeasuredCategory;
    using Sizes = std::array<qint64, 4>;

    [[nodiscard]] static const std::array<MeasuredCategory, 4> &measuredCategories();
    /// The folders of each measured category: its own, and what this platform has behind it on the start-up volume.
    /// No file lies in two of them.
    [[nodiscard]] static std::array<QList<FilePath>, 4> distinctFolders(const FileManager &files, const Places &places);
    [[nodiscard]] QList<SystemCategoryItem> itemsOf(const Sizes &sizes) const;
    [[nodiscard]] std::stop_token beginScan();
    void endScan(const QList<SystemCategoryItem> &items);
    void setScanProgress(double progress);

    std::shared_ptr<ScannerService> m_scanner;
    std::shared_ptr<const FileManager> m_files;
    std::shared_ptr<const Places> m_places;
    SystemCategoryListModel m_storageItems{nullptr};
    LatestTask m_scan;
    bool m_isScanning = false;
    double m_scanProgress = 0;
    qint64 m_totalDiskSize = 0;
    qint64 m_freeDiskSize = 0;
};

} // namespace Quillmere
