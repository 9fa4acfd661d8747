#include "Services/ScannerService.h"

#include "Utilities/Attempt.h"
#include "Utilities/LocalizationManager.h"
#include "Utilities/RemovableLocation.h"
#include "Values/CancellationError.h"

#include <algorithm>

namespace Quillmere {

namespace {

// A root with thousands of children must not flood whoever shows the progress.
constexpr qsizetype entriesPerReport = 10;

} // namespace

/// A row of the table of safe categories.
struct ScannerService::CategoryRow
{
    QStringView name;
    QStringView nameKey;
    QStringView descriptionKey;
    QStringView icon;
    PlaceTable table;
    PlaceRow ownPlace;
    QStringView itemCategory; ///< Empty where items take the name of their root.
    double progressBase;
    double progressMax;
};

/// The part of the progress bar that one place fills.
struct ScannerService::Slice
{
    double base;
    double max;

    [[nodiscard]] double at(qsizetype index, qsizetype count) const
    {
        return base + (double(index) / double(count)) * (max - base);
    }
};

/// What all places of one run share.
struct ScannerService::Walk
{
    const Progress &progress;
    const std::stop_token &task;
};

struct ScannerService::Found
{
    QList<CleanupItem> items;
    qint64 size = 0;
};

ScannerService::ScannerService(std::shared_ptr<const FileManager> files, std::shared_ptr<const Places> places)
    : m_files(std::move(files))
    , m_places(std::move(places))
{
}

bool ScannerService::isCancelled() const
{
    const std::scoped_lock lock(m_stateLock);
    return m_cancelled;
}

void ScannerService::resetCancellation()
{
    const std::scoped_lock lock(m_stateLock);
    m_cancelled = false;
    m_stop = {};
}

void ScannerService::cancelScan()
{
    const std::scoped_lock lock(m_stateLock);
    m_cancelled = true;
    m_stop.request_stop();
}

void ScannerService::testForCancellation(const std::stop_token &task) const
{
    if (isCancelled() || task.stop_requested())
        throw CancellationError();
}

Cancellation ScannerService::cancellation(const std::stop_token &task) const
{
    const std::scoped_lock lock(m_stateLock);
    return Cancellation(m_stop.get_token(), task);
}

QList<CleanupCategory> ScannerService::scanSafeCategories(const Progress &progress, const std::stop_token &task)
{
    const FilePath home = m_files->homeDirectory();
    const Localizer &localizer = Localizer::shared();
    const CategoryRow rows[] = {
        {u"User Cache",
         u"cleanup.category.userCache",
         u"cleanup.description.userCache",
         u"folder",
         PlaceTable::UserCache,
         {home.appending("Library/Caches"), {}},
         {},
         0.0,
         0.25},
        {u"User Logs",
         u"cleanup.category.userLogs",
         u"cleanup.description.userLogs",
         u"doc.text",
         PlaceTable::UserLogs,
         {home.appending("Library/Logs"), {}},
         {},
         0.25,
         0.5},
        {u"Container Cache",
         u"cleanup.category.containerCache",
         u"cleanup.description.containerCache",
         u"shippingbox",
         PlaceTable::ContainerCache,
         {home.appending("Library/Containers"), "Data/Library/Caches"},
         u"Container Cache",
         0.5,
         0.75},
        {u"Temporary Files",
         u"cleanup.category.tempFiles",
         u"cleanup.description.tempFiles",
         u"clock",
         PlaceTable::TemporaryFiles,
         {m_files->temporaryDirectory(), {}},
         {},
         0.75,
         1.0},
    };

    const Walk walk{progress, task};
    QList<CleanupCategory> categories;
    for (const CategoryRow &row : rows) {
        CleanupCategory category;
        category.name = row.name.toString();
        category.localizedName = localizer.localized(row.nameKey.toString());
        category.description = localizer.localized(row.descriptionKey.toString());
        category.icon = row.icon.toString();
        scanCategory(row, walk, category);
        categories.append(category);
    }
    progress(1.0, localizer.localized(u"cleanup.scanComplete"_qs));
    return categories;
}

void ScannerService::scanCategory(const CategoryRow &row, const Walk &walk, CleanupCategory &category)
{
    const QList<PlaceRow> places = existingRows(row);
    const double share = (row.progressMax - row.progressBase) / double(std::max<qsizetype>(places.size(), 1));
    Found found;
    for (qsizetype i = 0; i < places.size(); ++i) {
        const bool isLast = i + 1 == places.size();
        const double base = row.progressBase + double(i) * share;
        scanPlace(places.at(i), row, {base, isLast ? row.progressMax : base + share}, walk, found);
    }
    testForCancellation(walk.task);
    category.items = found.items;
    category.totalSize = found.size;
    category.itemCount = found.items.size();
}

QList<PlaceRow> ScannerService::existingRows(const CategoryRow &row) const
{
    QList<PlaceRow> rows;
    for (const PlaceRow &place : QList<PlaceRow>{row.ownPlace} + m_places->rowsBehind(row.table)) {
        if (m_files->isAnswering(place.root) && m_files->fileExists(place.root))
            rows.append(place);
    }
    return rows;
}

void ScannerService::scanPlace(const PlaceRow &place, const CategoryRow &row, const Slice &slice, const Walk &walk,
                               Found &found)
{
    // Removal refuses a location below a link, so items are named below the root's true place.
    const FilePath root = m_files->resolvingSymlinks(place.root);
    const QList<DirectoryEntry> entries
        = m_files->contentsOfDirectory(root, HiddenFiles::Skip).valueOr(QList<DirectoryEntry>());
    for (qsizetype i = 0; i < entries.size(); ++i) {
        testForCancellation(walk.task);
        const QString name = FilePath::displayText(entries.at(i).path.lastPathComponent());
        if (i % entriesPerReport == 0)
            walk.progress(slice.at(i, entries.size()), name);

        const std::optional<FilePath> offered
            = place.suffix.isEmpty() ? offeredChild(entries.at(i)) : offeredInside(entries.at(i).path, place.suffix);
        if (!offered || m_places->reasonToKeep(*offered, cancellation(walk.task)))
            continue;
        const TreeSize size = scanDirectory(*offered, walk.task);
        if (size.allocatedSize < 1)
            continue;
        CleanupItem item;
        item.name = name;
        item.path = *offered;
        item.size = size.allocatedSize;
        item.category = row.itemCategory.isEmpty() ? FilePath::displayText(place.root.lastPathComponent())
                                                   : row.itemCategory.toString();
        found.items.append(item);
        found.size += item.size;
    }
}

std::optional<FilePath> ScannerService::offeredChild(const DirectoryEntry &child) const
{
    const bool isOfRoot = child.type == EntryKind::Directory && !m_files->isMountPoint(child.path);
    return isOfRoot ? std::optional(child.path) : std::nullopt;
}

std::optional<FilePath> ScannerService::offeredInside(const FilePath &child, const QByteArray &suffix) const
{
    const FilePath offered = removableLocation(*m_files, child.appending(suffix));
    const bool isThere
        = m_files->isAnswering(offered) && !m_files->isMountPoint(offered) && m_files->fileExists(offered);
    return isThere ? std::optional(offered) : std::nullopt;
}

TreeSize ScannerService::scanDirectory(const FilePath &folder, const std::stop_token &task)
{
    const Result<TreeSize> size = m_files->measureTree(folder, cancellation(task));
    if (!size)
        throw CancellationError();
    return size.value();
}

std::optional<qint64> ScannerService::sizeOf(const FilePath &folder, const std::stop_token &task)
{
    const Result<TreeSize> size = attempted([&] { return scanDirectory(folder, task); });
    if (!size && size.failure().kind == Failure::Kind::Cancelled)
        return std::nullopt;
    return size.valueOr({}).allocatedSize;
}

} // namespace Quillmere
