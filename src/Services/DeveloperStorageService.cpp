#include "Services/DeveloperStorageService.h"

#include "Utilities/LocalizationManager.h"
#include "Utilities/RemovableLocation.h"

#include <QSet>
#include <QStringDecoder>

#include <chrono>

namespace Quillmere {

namespace {

constexpr std::chrono::seconds patienceForVersion{3};

/// Nothing where the measuring failed, as it does when it is cancelled.
std::optional<qint64> sizeOf(const FilePath &folder, ScannerService &scanner)
{
    try {
        return scanner.scanDirectory(folder).allocatedSize;
    } catch (const std::exception &) {
        return std::nullopt;
    }
}

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

/// What has been found installed so far, and by which places.
struct DeveloperStorageService::Inventory
{
    QString name = u"Installed Developer Tools and SDKs"_qs;
    QString explanation = Localizer::shared().localized(u"developer.installed.description"_qs);
    QString advice = Localizer::shared().localized(u"developer.installed.keep"_qs);
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

QList<CleanupCategory> DeveloperStorageService::scanCleanupCategories(ScannerService &scanner) const
{
    const Localizer &localizer = Localizer::shared();
    QList<CleanupCategory> categories;
    for (const CleanupGroup &group : cleanupGroups(m_lookup)) {
        if (scanner.isCancelled())
            break;
        const std::optional<QList<CleanupItem>> items = itemsOf(group, scanner);
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

QList<PlaceEntry> DeveloperStorageService::offeredPlaces(const CleanupGroup &group, const ScannerService &scanner) const
{
    QList<PlaceEntry> places;
    TakenPlaces taken;
    for (const FilePath &path : m_lookup.existingUnique(group.paths)) {
        if (scanner.isCancelled())
            return {};
        if (!mayBeOffered(path))
            continue;
        places.append({FilePath::displayText(path.lastPathComponent()), path});
        taken.take(m_lookup.keyOf(path));
    }
    for (const PlaceEntry &entry : m_places->entriesBehind(group.name)) {
        if (scanner.isCancelled())
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

std::optional<QList<CleanupItem>> DeveloperStorageService::itemsOf(const CleanupGroup &group,
                                                                   ScannerService &scanner) const
{
    const QString explanation = Localizer::shared().localized(group.descriptionKey);
    QList<CleanupItem> items;
    for (const PlaceEntry &place : offeredPlaces(group, scanner)) {
        if (scanner.isCancelled())
            return std::nullopt;
        const FilePath location = removableLocation(m_lookup.files(), place.path.standardized());
        const std::optional<qint64> size = sizeOf(location, scanner);
        if (!size && scanner.isCancelled())
            return std::nullopt;
        if (size.value_or(0) < 1)
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

std::optional<CleanupCategory> DeveloperStorageService::scanInstalledTools(ScannerService &scanner) const
{
    Inventory inventory;
    if (!takeRoots(inventory, scanner) || !takeRuntimes(inventory, scanner) || inventory.items.isEmpty())
        return std::nullopt;
    CleanupCategory category;
    category.name = inventory.name;
    category.localizedName = Localizer::shared().localized(u"developer.installed.name"_qs);
    category.description = inventory.explanation;
    category.isSelected = false;
    category.isAvailable = false;
    category.items = inventory.items;
    category.icon = u"shippingbox.fill"_qs;
    count(category);
    return category;
}

bool DeveloperStorageService::takeRoots(Inventory &inventory, ScannerService &scanner) const
{
    for (const InstalledRoot &root : installedRoots(m_lookup, *m_places)) {
        if (!m_lookup.files().fileExists(root.location))
            continue;
        if (scanner.isCancelled())
            return false;
        const FilePath key = m_lookup.keyOf(root.location);
        if (inventory.isNew(key))
            inventory.take(root.name, root.location, sizeOf(root.location, scanner).value_or(0));
    }
    return true;
}

bool DeveloperStorageService::takeRuntimes(Inventory &inventory, ScannerService &scanner) const
{
    for (const Runtime &runtime : detectedRuntimes(m_lookup, *m_places)) {
        if (scanner.isCancelled())
            return false;
        if (!inventory.isNew(m_lookup.keyOf(runtime.executable)))
            continue;
        const qint64 size = sizeOf(runtime.executable, scanner).value_or(0);
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
