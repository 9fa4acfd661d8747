#include "ViewModels/LargeFilesViewModel.h"

#include "Services/LargeFileFinder.h"
#include "Utilities/BackgroundWork.h"
#include "Utilities/ByteCountFormatter.h"
#include "Utilities/Diagnostics.h"
#include "Utilities/LocalizationManager.h"
#include "Utilities/PathValidator.h"
#include "Utilities/TextComparison.h"
#include "ViewModels/DesktopRequests.h"
#include "ViewModels/LatestNews.h"
#include "ViewModels/NameRanks.h"
#include "ViewModels/UnfinishedRuns.h"

#include <algorithm>

namespace Quillmere {

namespace {

struct Found
{
    QList<FileItem> files;
    std::vector<qsizetype> nameRanks;
};

struct ScanNews
{
    double fraction;
    QString name;
};

QLocale sortingLocale()
{
    return collationLocale(Localizer::shared().effectiveLanguage());
}

} // namespace

LargeFilesViewModel::LargeFilesViewModel(std::shared_ptr<const FileManager> disk, std::shared_ptr<const Places> places,
                                         std::shared_ptr<const Workspace> workspace, QObject *parent)
    : QObject(parent)
    , m_disk(std::move(disk))
    , m_places(std::move(places))
    , m_workspace(std::move(workspace))
{
    connect(&Localizer::shared(), &Localizer::languageChanged, this, &LargeFilesViewModel::changeLanguage);
}

QString LargeFilesViewModel::summary() const
{
    return QString::number(filteredFiles().size()) + u' ' + localized(u"largeFiles.filesCount"_qs) + u" ("_qs
        + formatByteCount(m_filteredSize) + u')';
}

QStringList LargeFilesViewModel::offeredCategories() const
{
    QStringList words;
    for (const FileCategory category : allCases<FileCategory>().first(offeredFileCategories))
        words.append(localized(labelKey(category)));
    return words;
}

void LargeFilesViewModel::setSelectedCategory(FileCategory category)
{
    if (category == m_selectedCategory)
        return;
    m_selectedCategory = category;
    Q_EMIT selectedCategoryChanged();
    filterAndSort();
}

void LargeFilesViewModel::setSelectedCategoryIndex(int index)
{
    if (const auto category = caseAt<FileCategory>(index))
        setSelectedCategory(*category);
}

void LargeFilesViewModel::toggleSort(SortField field)
{
    m_sortAscending = field == m_sortField && !m_sortAscending;
    m_sortField = field;
    Q_EMIT sortChanged();
    filterAndSort();
}

QCoro::Task<> LargeFilesViewModel::scan()
{
    const std::stop_token walk = beginScan();
    const QPointer self(this);
    const LatestNews<LargeFilesViewModel, ScanNews> news(self,
                                                         [walk](LargeFilesViewModel &model, const ScanNews &latest) {
                                                             if (model.m_walk.isLatest(walk) && model.m_isScanning)
                                                                 model.showProgress(latest.fraction, latest.name);
                                                         });
    const auto progress = [news](double fraction, const QString &name) { news.tell({fraction, name}); };
    const QLocale locale = sortingLocale();
    auto scanning = inBackground([disk = m_disk, places = m_places, progress, walk, locale]() -> std::optional<Found> {
        std::optional<QList<FileItem>> files = LargeFileFinder(disk, places, progress, Cancellation(walk)).find();
        if (!files)
            return std::nullopt;
        return Found{*files, nameRanks(*files, locale)};
    });
    const std::optional<Found> found = co_await scanning;
    if (!self || !m_walk.isLatest(walk) || m_isCancelled)
        co_return;
    news.deliver();
    if (found) {
        // Of another language they would put the names in another order.
        m_nameRanks = sortingLocale() == locale ? found->nameRanks : std::vector<qsizetype>();
        setFiles(found->files);
    }
    setScanning(false);
}

std::stop_token LargeFilesViewModel::beginScan()
{
    std::stop_token walk = m_walk.begin();
    setScanning(true);
    m_isCancelled = false;
    showProgress(0, localized(u"largeFiles.starting"_qs));
    m_nameRanks.clear();
    setFiles({});
    return walk;
}

void LargeFilesViewModel::cancelScan()
{
    m_isCancelled = true;
    m_walk.stop();
    setScanning(false);
}

void LargeFilesViewModel::revealInFinder(const FileItem &file)
{
    revealWithoutWaiting(m_workspace, file.path);
}

QString LargeFilesViewModel::descriptionOf(const FileItem &file) const
{
    return file.name + u'\n' + localized(u"largeFiles.size"_qs) + u": "_qs + formatByteCount(file.size);
}

QCoro::Task<> LargeFilesViewModel::trash(FileItem file)
{
    const bool isProtected = PathValidator::isProtectedPath(file.path, *m_disk)
        || PathValidator::isProtectedUserDirectory(file.path, *m_disk);
    if (isProtected || m_onTheWayToTrash.contains(file.id))
        co_return;
    m_onTheWayToTrash.insert(file.id);

    // To another volume the file is copied, which takes its time and must come to its end.
    const UnfinishedRuns::Token unfinished(UnfinishedRuns::shared());
    const QPointer self(this);
    auto moving = inBackground([disk = m_disk, path = file.path] { return disk->trashItem(path); });
    const Result<FilePath> moved = co_await moving;
    if (!moved)
        printDiagnostic(u"Failed to trash file: "_qs, moved.failure());
    if (!self)
        co_return;
    m_onTheWayToTrash.remove(file.id);
    if (moved)
        removeFile(file.id);
}

void LargeFilesViewModel::setScanning(bool isScanning)
{
    m_isScanning = isScanning;
    Q_EMIT isScanningChanged();
}

void LargeFilesViewModel::showProgress(double fraction, const QString &name)
{
    m_scanProgress = fraction;
    m_currentScanningPath = name;
    Q_EMIT progressChanged();
}

void LargeFilesViewModel::setFiles(const QList<FileItem> &files)
{
    m_files = files;
    Q_EMIT filesChanged();
    filterAndSort();
}

void LargeFilesViewModel::removeFile(const QUuid &id)
{
    const auto found = std::ranges::find(std::as_const(m_files), id, &FileItem::id);
    if (found == m_files.cend())
        return;
    const qsizetype index = found - m_files.cbegin();
    m_files.removeAt(index);
    if (!m_nameRanks.empty())
        m_nameRanks.erase(m_nameRanks.begin() + index);
    m_rows.remove(id);
    publishFilteredFiles();
    Q_EMIT filesChanged();
}

void LargeFilesViewModel::filterAndSort()
{
    if (m_sortField == SortField::Name && m_nameRanks.empty())
        m_nameRanks = nameRanks(m_files, sortingLocale());
    std::vector<qsizetype> order;
    for (qsizetype i = 0; i < m_files.size(); ++i) {
        if (m_selectedCategory == FileCategory::All || m_files.at(i).category == m_selectedCategory)
            order.push_back(i);
    }
    std::ranges::stable_sort(order, [this](qsizetype left, qsizetype right) { return isAscending(left, right); });
    // Of two equal files the negated comparison answers that either goes before the other, which no sort can follow by
    // itself. A stable one that asks it turns their order round, and so does this.
    if (!m_sortAscending)
        std::ranges::reverse(order);

    QList<FileItem> filtered;
    filtered.reserve(static_cast<qsizetype>(order.size()));
    for (const qsizetype index : order)
        filtered.append(m_files.at(index));
    m_rows.setFiles(filtered);
    publishFilteredFiles();
}

bool LargeFilesViewModel::isAscending(qsizetype left, qsizetype right) const
{
    switch (m_sortField) {
    case SortField::Name:
        return m_nameRanks[static_cast<size_t>(left)] < m_nameRanks[static_cast<size_t>(right)];
    case SortField::Size:
        return m_files.at(left).size < m_files.at(right).size;
    case SortField::Date:
        // An optional without a date is less than any date.
        return m_files.at(left).lastModified < m_files.at(right).lastModified;
    }
    Q_UNREACHABLE();
}

void LargeFilesViewModel::publishFilteredFiles()
{
    m_filteredSize = 0;
    for (const FileItem &file : filteredFiles())
        m_filteredSize += file.size;
    Q_EMIT filteredFilesChanged();
}

void LargeFilesViewModel::changeLanguage()
{
    m_nameRanks.clear();
    if (m_sortField == SortField::Name)
        filterAndSort();
    Q_EMIT filteredFilesChanged();
    Q_EMIT languageChanged();
}

} // namespace Quillmere
