#include "ViewModels/SystemDataViewModel.h"

#include "Services/DiskSpaceService.h"
#include "Utilities/BackgroundWork.h"
#include "Utilities/ByteCountFormatter.h"
#include "Utilities/LocalizationManager.h"
#include "Utilities/RemovableLocation.h"

#include <algorithm>
#include <numeric>
#include <optional>

namespace Quillmere {

namespace {

FilePath startUpVolume()
{
    return FilePath("/");
}

/// Nothing once the scanner or the task was stopped.
std::optional<qint64> sizeOf(const QList<FilePath> &folders, ScannerService &scanner, const std::stop_token &task)
{
    qint64 size = 0;
    for (const FilePath &folder : folders) {
        const std::optional<qint64> own = scanner.sizeOf(folder, task);
        if (!own || scanner.isCancelled() || task.stop_requested())
            return std::nullopt;
        size += *own;
    }
    return size;
}

} // namespace

struct SystemDataViewModel::MeasuredCategory
{
    double progress; ///< When its walk starts.
    QString name;
    QByteArray folder; ///< Absolute, or relative to the home.
    SliceColor color;
    QString icon;

    [[nodiscard]] FilePath folderOn(const FileManager &files) const
    {
        return folder.startsWith('/') ? FilePath(folder) : files.homeDirectory().appending(folder);
    }
};

const std::array<SystemDataViewModel::MeasuredCategory, 4> &SystemDataViewModel::measuredCategories()
{
    static const std::array<MeasuredCategory, 4> categories = {{
        {0.3, u"Applications"_qs, "/Applications", SliceColor::Blue, u"app.gift"_qs},
        {0.5, u"Documents"_qs, "Documents", SliceColor::Green, u"doc"_qs},
        {0.7, u"Developer"_qs, "Library/Developer", SliceColor::Purple, u"hammer"_qs},
        {0.9, u"Caches"_qs, "Library/Caches", SliceColor::Orange, u"archivebox"_qs},
    }};
    return categories;
}

SystemDataViewModel::SystemDataViewModel(std::shared_ptr<ScannerService> scanner,
                                         std::shared_ptr<const FileManager> files, std::shared_ptr<const Places> places,
                                         QObject *parent)
    : QObject(parent)
    , m_scanner(std::move(scanner))
    , m_files(std::move(files))
    , m_places(std::move(places))
{
    connect(&Localizer::shared(), &Localizer::languageChanged, this, &SystemDataViewModel::capacityChanged);
}

QString SystemDataViewModel::totalCapacityText() const
{
    return formatByteCount(m_totalDiskSize);
}

void SystemDataViewModel::appear()
{
    if (m_storageItems.items().isEmpty())
        startScan();
}

void SystemDataViewModel::cancelScan()
{
    m_scanner->cancelScan();
    m_scan.stop();
    // The walk itself may be held up where a volume has gone, and nobody is to look at it till then.
    if (m_isScanning)
        endScan({});
}

QCoro::Task<> SystemDataViewModel::scanStorage()
{
    const std::stop_token task = beginScan();
    const QPointer self(this);

    auto asking = inBackground([files = m_files] { return DiskSpaceService::getDiskSpace(startUpVolume(), *files); });
    const DiskSpaceService::DiskSpaceInfo space = co_await asking;
    if (!self)
        co_return;
    m_totalDiskSize = space.totalSpace;
    m_freeDiskSize = space.freeSpace;
    Q_EMIT capacityChanged();
    if (task.stop_requested())
        co_return;

    const auto progress = [self, task](double fraction) {
        onMainQueue(self, [task, fraction](SystemDataViewModel &model) {
            if (model.m_scan.isLatest(task) && model.m_isScanning)
                model.setScanProgress(fraction);
        });
    };
    auto measuring = inBackground(
        [scanner = m_scanner, files = m_files, places = m_places, progress, task]() -> std::optional<Sizes> {
            const std::array<QList<FilePath>, 4> folders = distinctFolders(*files, *places);
            Sizes sizes = {};
            for (size_t i = 0; i < sizes.size(); ++i) {
                progress(measuredCategories().at(i).progress);
                const std::optional<qint64> size = sizeOf(folders.at(i), *scanner, task);
                if (!size)
                    return std::nullopt;
                sizes.at(i) = *size;
            }
            return sizes;
        });
    const std::optional<Sizes> sizes = co_await measuring;
    if (self && !task.stop_requested())
        endScan(sizes ? itemsOf(*sizes) : QList<SystemCategoryItem>());
}

std::stop_token SystemDataViewModel::beginScan()
{
    std::stop_token task = m_scan.begin();
    m_scanner->resetCancellation();
    m_isScanning = true;
    setScanProgress(0.1);
    m_storageItems.setItems({}, 0);
    Q_EMIT phaseChanged();
    return task;
}

void SystemDataViewModel::endScan(const QList<SystemCategoryItem> &items)
{
    if (!items.isEmpty()) {
        m_storageItems.setItems(items, m_totalDiskSize);
        setScanProgress(1.0);
    }
    m_isScanning = false;
    Q_EMIT phaseChanged();
}

void SystemDataViewModel::setScanProgress(double progress)
{
    m_scanProgress = progress;
    Q_EMIT progressChanged();
}

QList<SystemCategoryItem> SystemDataViewModel::itemsOf(const Sizes &sizes) const
{
    QList<SystemCategoryItem> items;
    const auto add = [&](const QString &name, qint64 size, SliceColor color, const QString &icon) {
        items.append({QUuid::createUuid(), name, size, color, icon});
    };
    for (size_t i = 0; i < sizes.size(); ++i) {
        const MeasuredCategory &category = measuredCategories().at(i);
        add(category.name, sizes.at(i), category.color, category.icon);
    }
    const qint64 measured = std::accumulate(sizes.begin(), sizes.end(), qint64(0));
    const qint64 remainder = std::max<qint64>(m_totalDiskSize - m_freeDiskSize - measured, 0);
    add(u"macOS System"_qs, remainder, SliceColor::Gray, u"apple.logo"_qs);
    add(u"Free Space"_qs, m_freeDiskSize, SliceColor::Teal, u"circle.dotted"_qs);
    return items;
}

std::array<QList<FilePath>, 4> SystemDataViewModel::distinctFolders(const FileManager &files, const Places &places)
{
    std::array<QList<FilePath>, 4> folders;
    QList<FilePath> taken;
    for (size_t i = 0; i < folders.size(); ++i) {
        const FilePath own = measuredCategories().at(i).folderOn(files);
        folders.at(i).append(own);
        taken.append(removableLocation(files, own));
    }
    // What this platform adds makes the picture of this one volume more exact, so it counts nothing twice and nothing
    // else.
    for (size_t i = 0; i < folders.size(); ++i) {
        for (const PlaceEntry &entry : places.entriesBehind(measuredCategories().at(i).name)) {
            const FilePath folder = files.resolvingSymlinks(entry.path);
            const bool isTaken = std::ranges::any_of(
                taken, [&](const FilePath &known) { return folder.isWithin(known) || known.isWithin(folder); });
            if (isTaken || !files.areOnSameVolume(folder, startUpVolume()))
                continue;
            taken.append(folder);
            folders.at(i).append(folder);
        }
    }
    return folders;
}

} // namespace Quillmere
