#pragma once

#include "Platform/FileManager.h"
#include "Platform/Places.h"
#include "Platform/Workspace.h"
#include "ViewModels/LargeFilesListModel.h"
#include "ViewModels/LatestTask.h"

#include <QObject>
#include <QSet>

#include <QCoro/QCoroTask>

#include <memory>
#include <stop_token>
#include <vector>

namespace Quillmere {

/// The Large Files screen: walk through six folders of the home, narrow and sort what was found, and reveal a file or
/// move it to the Trash. A walk ends with the screen; a file that is on its way to the Trash gets there.
class LargeFilesViewModel final : public QObject
{
    Q_OBJECT
    Q_PROPERTY(Quillmere::LargeFilesListModel *rows READ rows CONSTANT)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY filesChanged)
    Q_PROPERTY(QString summary READ summary NOTIFY filteredFilesChanged)
    Q_PROPERTY(bool isScanning READ isScanning NOTIFY isScanningChanged)
    Q_PROPERTY(double scanProgress READ scanProgress NOTIFY progressChanged)
    Q_PROPERTY(QString currentScanningPath READ currentScanningPath NOTIFY progressChanged)
    Q_PROPERTY(
        int selectedCategory READ selectedCategoryIndex WRITE setSelectedCategoryIndex NOTIFY selectedCategoryChanged)
    Q_PROPERTY(QStringList offeredCategories READ offeredCategories NOTIFY languageChanged)
    Q_PROPERTY(SortField sortField READ sortField NOTIFY sortChanged)
    Q_PROPERTY(bool sortAscending READ sortAscending NOTIFY sortChanged)

public:
    enum class SortField { Name, Size, Date };
    Q_ENUM(SortField)

    LargeFilesViewModel(std::shared_ptr<const FileManager> disk, std::shared_ptr<const Places> places,
                        std::shared_ptr<const Workspace> workspace, QObject *parent = nullptr);

    /// All that was found, in the order in which it was.
    [[nodiscard]] const QList<FileItem> &files() const { return m_files; }
    /// Those of the selected category, sorted. Worked out once for each change.
    [[nodiscard]] const QList<FileItem> &filteredFiles() const { return m_rows.files(); }
    [[nodiscard]] LargeFilesListModel *rows() { return &m_rows; }
    [[nodiscard]] bool isEmpty() const { return m_files.isEmpty(); }
    /// Count and size of filteredFiles() in words.
    [[nodiscard]] QString summary() const;

    [[nodiscard]] bool isScanning() const { return m_isScanning; }
    [[nodiscard]] bool isCancelled() const { return m_isCancelled; }
    [[nodiscard]] double scanProgress() const { return m_scanProgress; }
    [[nodiscard]] QString currentScanningPath() const { return m_currentScanningPath; }

    [[nodiscard]] FileCategory selectedCategory() const { return m_selectedCategory; }
    void setSelectedCategory(FileCategory category);
    [[nodiscard]] int selectedCategoryIndex() const { return int(m_selectedCategory); }
    void setSelectedCategoryIndex(int index);
    /// The words of the categories that can be selected.
    [[nodiscard]] QStringList offeredCategories() const;

    [[nodiscard]] SortField sortField() const { return m_sortField; }
    [[nodiscard]] bool sortAscending() const { return m_sortAscending; }
    /// Turns the order round where it is that field's already; otherwise sorts by it, descending.
    Q_INVOKABLE void toggleSort(Quillmere::LargeFilesViewModel::SortField field);

    // Started and left to themselves; whoever wants to know when they end awaits them.
    QCoro::Task<> scan();
    /// Refuses a protected location without a word. What fails is told on the standard output, and the row stays.
    QCoro::Task<> trash(FileItem file);

    Q_INVOKABLE void startScan() { scan(); }
    Q_INVOKABLE void cancelScan();
    Q_INVOKABLE void moveToTrash(const Quillmere::FileItem &file) { trash(file); }
    Q_INVOKABLE void revealInFinder(const Quillmere::FileItem &file);
    /// What the question about @p file says of it: its name, and in a second line its size.
    Q_INVOKABLE [[nodiscard]] QString descriptionOf(const Quillmere::FileItem &file) const;

Q_SIGNALS:
    void filesChanged();
    void filteredFilesChanged();
    void isScanningChanged();
    void progressChanged();
    void selectedCategoryChanged();
    void sortChanged();
    void languageChanged();

private:
    [[nodiscard]] std::stop_token beginScan();
    void setScanning(bool isScanning);
    void showProgress(double fraction, const QString &name);
    void setFiles(const QList<FileItem> &files);
    void removeFile(const QUuid &id);
    void filterAndSort();
    /// Whether one of files(), by its place among them, comes before another in the ascending order.
    [[nodiscard]] bool isAscending(qsizetype left, qsizetype right) const;
    void publishFilteredFiles();
    void changeLanguage();

    std::shared_ptr<const FileManager> m_disk;
    std::shared_ptr<const Places> m_places;
    std::shared_ptr<const Workspace> m_workspace;

    QList<FileItem> m_files;
    std::vector<qsizetype> m_nameRanks; ///< Of m_files, one each. Empty while they are not known.
    LargeFilesListModel m_rows{nullptr};
    qint64 m_filteredSize = 0;
    FileCategory m_selectedCategory = FileCategory::All;
    SortField m_sortField = SortField::Size;
    bool m_sortAscending = false;

    bool m_isScanning = false;
    bool m_isCancelled = false;
    LatestTask m_walk;
    double m_scanProgress = 0;
    QString m_currentScanningPath;
    QSet<QUuid> m_onTheWayToTrash;
};

} // namespace Quillmere
