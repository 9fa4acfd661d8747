#include "Services/DeveloperStorageService.h"

#include "Utilities/LocalizationManager.h"
#include "Utilities/RemovableLocation.h"

#include <QSet>
#include <QStringDecoder>

#include <chrono>

namespace Quillmere {

namespace {

constexpr std::chrono::seconds patienceForVersion{3};

void count(CleanupCategory &category)
{
    category.itemCount = category.items.size();
    for (const CleanupItem &item : std::as_const(category.items))
        category.totalSize += item.size;
}

/// The first line of @p output that is not empty; empty where there is none or @p output is no text.
QString firstLine(const QByteArray &output)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder(output);
    return decoder.hasError() ? QString() : text.split(u'\n', Qt::SkipEmptyParts).value(0);
}

} // namespace

/// One scan, which is over early once its scanner was cancelled or its task stopped.
struct DeveloperStorageService::Scan
{
    ScannerService &scanner;
    std::stop_token task;

    [[nodiscard]] bool isOver() const { return scanner.isCancelled() || task.stop_requested(); }
    [[nodiscard]] std::optional<qint64> sizeOf(const FilePath &folder) const { return scanner.sizeOf(folder, task); }
};

/// What has been found installed so far, and by which places.
struct DeveloperStorageService::Inventory
{
    QString name = u"Installed Developer Tools and SDKs"_qs;
    QString explanation = localized(u"developer.installed.description"_qs);
    QString advice = localized(u"developer.installed.keep"_qs);
    QSet<FilePath> seen;
    QList<CleanupItem> items;

    /// False when @p key, with its links followed, was there before.
    [[nodiscard]] bool isNew(const FilePath &key)
    {
        if (seen.contains(key))
            return false;
        seen.insert(key);
        return true;
    }

    void take(const QString &itemName, const FilePath &path, qint64 size)
    {
        CleanupItem item;
        item.name = itemName;
        item.path = path;
        item.size = size;
        item.category = name;
        item.isSelected = false;
        item.isDeletable = false;
        item.explanation = explanation;
        item.recommendedAction = advice;
        items.append(item);
    }
};

namespace {

/// Locations that nothing else is to lie in or around.
class TakenPlaces
{
public:
    void take(const FilePath &place)
    {
        m_places.insert(place);
        forEachAbove(place, [this](const FilePath &above) {
            m_above.insert(above);
            return false;
        });
    }
    [[nodiscard]] bool overlap(const FilePath &place) const
    {
        return m_above.contains(place) || m_places.contains(place)
            || forEachAbove(place, [this](const FilePath &above) { return m_places.contains(above); });
    }

private:
    /// Goes up from @p place until @p see is satisfied, and says whether it was.
    template<typename See>
    static bool forEachAbove(FilePath place, const See &see)
    {
        while (place != FilePath("/") && !place.isEmpty()) {
            place = place.deletingLastPathComponent();
            if (see(place))
                return true;
        }
        return false;
    }

    QSet<FilePath> m_places;
    QSet<FilePath> m_above;
};

} // namespace

DeveloperStorageService::DeveloperStorageService(std::shared_ptr<const FileManager> files,
                                                 std::shared_ptr<const Places> places,
                                                 std::shared_ptr<const ProcessRunner> processes,
                                                 DeveloperStorageLookup::Environment environment)
    : m_lookup(std::move(files), std::move(environment))
    , m_places(std::move(places))
    , m_processes(std::move(processes))
{
}

QList<CleanupCategory> DeveloperStorageService::scanCleanupCategories(ScannerService &scanner,
                                                                      const std::stop_token &task) const
{
    const Scan scan{scanner, task};
    const Localizer &localizer = Localizer::shared();
    QList<CleanupCategory> categories;
    for (const CleanupGroup &group : cleanupGroups(m_lookup)) {
        if (scan.isOver())
            break;
        const std::optional<QList<CleanupItem>> items = itemsOf(group, scan);
        if (!items)
            break;
        if (items->isEmpty())
            continue;
        CleanupCategory category;
        category.name = group.name;
        category.localizedName = localizer.localized(group.localizedNameKey);
        category.description = localizer.localized(group.descriptionKey);
        category.riskLevel = group.risk;
        category.isSelected = group.risk == RiskLevel::Safe;
        category.items = *items;
        category.icon = group.icon;
        count(category);
        categories.append(category);
    }
    return categories;
}

QList<PlaceEntry> DeveloperStorageService::offeredPlaces(const CleanupGroup &group, const Scan &scan) const
{
    QList<PlaceEntry> places;
    TakenPlaces taken;
    for (const FilePath &path : m_lookup.existingUnique(group.paths)) {
        if (scan.isOver())
            return {};
        if (!mayBeOffered(path))
            continue;
        places.append({FilePath::displayText(path.lastPathComponent()), path});
        taken.take(m_lookup.keyOf(path));
    }
    for (const PlaceEntry &entry : m_places->entriesBehind(group.name)) {
        if (scan.isOver())
            return {};
        // A variable may lead a row of this platform into a place that is there already, or around one.
        const FilePath key = m_lookup.keyOf(entry.path);
        if (taken.overlap(key) || !mayBeOffered(entry.path))
            continue;
        const QString name = FilePath::displayText(entry.path.lastPathComponent());
        places.append({entry.name.isEmpty() ? name : entry.name, entry.path});
        taken.take(key);
    }
    return places;
}

std::optional<QList<CleanupItem>> DeveloperStorageService::itemsOf(const CleanupGroup &group, const Scan &scan) const
{
    const QString explanation = localized(group.descriptionKey);
    QList<CleanupItem> items;
    for (const PlaceEntry &place : offeredPlaces(group, scan)) {
        if (scan.isOver())
            return std::nullopt;
        const FilePath location = removableLocation(m_lookup.files(), place.path.standardized());
        const std::optional<qint64> size = scan.sizeOf(location);
        if (!size)
            return std::nullopt;
        if (*size < 1)
            continue;
        CleanupItem item;
        item.name = place.name;
        item.path = location;
        item.size = *size;
        item.category = group.name;
        item.riskLevel = group.risk;
        item.isSelected = group.risk == RiskLevel::Safe;
        item.requiresAppClosed = true;
        item.explanation = explanation;
        items.append(item);
    }
    return items;
}

bool DeveloperStorageService::mayBeOffered(const FilePath &path) const
{
    return !m_places->reasonToKeep(removableLocation(m_lookup.files(), path.standardized()));
}

std::optional<CleanupCategory> DeveloperStorageService::scanInstalledTools(ScannerService &scanner,
                                                                           const std::stop_token &task) const
{
    const Scan scan{scanner, task};
    Inventory inventory;
    if (!takeRoots(inventory, scan) || !takeRuntimes(inventory, scan) || inventory.items.isEmpty())
        return std::nullopt;
    CleanupCategory category;
    category.name = inventory.name;
    category.localizedName = localized(u"developer.installed.name"_qs);
    category.description = inventory.explanation;
    category.isSelected = false;
    category.isAvailable = false;
    category.items = inventory.items;
    category.icon = u"shippingbox.fill"_qs;
    count(category);
    return category;
}

bool DeveloperStorageService::takeRoots(Inventory &inventory, const Scan &scan) const
{
    for (const InstalledRoot &root : installedRoots(m_lookup, *m_places)) {
        if (!m_lookup.exists(root.location))
            continue;
        if (scan.isOver())
            return false;
        const FilePath key = m_lookup.keyOf(root.location);
        if (inventory.isNew(key))
            inventory.take(root.name, root.location, scan.sizeOf(root.location).value_or(0));
    }
    return true;
}

bool DeveloperStorageService::takeRuntimes(Inventory &inventory, const Scan &scan) const
{
    for (const Runtime &runtime : detectedRuntimes(m_lookup, *m_places)) {
        if (scan.isOver())
            return false;
        if (!inventory.isNew(m_lookup.keyOf(runtime.executable)))
            continue;
        const qint64 size = scan.sizeOf(runtime.executable).value_or(0);
        const QString version = executableVersion(runtime);
        inventory.take(version.isEmpty() ? runtime.name : runtime.name + u" — "_qs + version, runtime.executable, size);
    }
    return true;
}

QString DeveloperStorageService::executableVersion(const Runtime &runtime) const
{
    const QString program = QString::fromUtf8(runtime.executable.bytes());
    if (program.toUtf8() != runtime.executable.bytes())
        return {};
    const auto outcome = m_processes->runWithin(patienceForVersion, {program, runtime.arguments});
    if (!outcome)
        return {};
    return outcome.value() ? firstLine(outcome.value()->standardOutput) : u"installed"_qs;
}

} // namespace Quillmere
