#include "Services/ApplicationInventory.h"

#include "Utilities/PropertyList.h"
#include "Utilities/PropertyListLimits.h"
#include "Values/FileName.h"

#include <algorithm>
#include <array>

namespace Quillmere {

namespace {

constexpr auto bundleExtension = "app";

enum class SearchName { AppName, BundleId };

struct LeftoverRow
{
    const char *folder; ///< Below the home.
    SearchName name;
    bool mayBeList; ///< Tried as a property list where there is nothing of the very name.
};

constexpr std::array<LeftoverRow, 4> leftoverRows = {{
    {"Library/Application Support", SearchName::AppName, false},
    {"Library/Caches", SearchName::BundleId, true},
    {"Library/Preferences", SearchName::BundleId, true},
    {"Library/Containers", SearchName::BundleId, true},
}};

bool isGone(const Result<void> &removal)
{
    return !removal && removal.failure().kind == Failure::Kind::NotFound;
}

AppItem itemNamed(const QString &name, const FilePath &path)
{
    AppItem item;
    item.name = name;
    item.path = path;
    return item;
}

} // namespace

ApplicationInventory::ApplicationInventory(std::shared_ptr<const FileManager> files,
                                           std::shared_ptr<const Places> places,
                                           std::shared_ptr<const InstalledApplications> applications)
    : m_files(std::move(files))
    , m_places(std::move(places))
    , m_applications(std::move(applications))
{
}

QList<FilePath> ApplicationInventory::roots() const
{
    // Removal refuses a location below a link, so items are named below the true place of their root. Where one root
    // is a link to the other, each bundle has one name then, and is not offered twice for the one removal.
    return {m_files->resolvingSymlinks(FilePath("/Applications")),
            m_files->resolvingSymlinks(m_files->homeDirectory().appending("Applications"))};
}

QList<FoundApplication> ApplicationInventory::bundlesIn(const FilePath &root) const
{
    QList<FoundApplication> bundles;
    if (!m_files->isAnswering(root))
        return bundles;
    for (const DirectoryEntry &entry : m_files->contentsOfDirectory(root, HiddenFiles::Skip).valueOr({})) {
        if (entry.path.pathExtension() == bundleExtension)
            bundles.append({itemNamed(FilePath::displayText(nameWithoutExtension(entry.path)), entry.path), {}});
    }
    return bundles;
}

QList<FoundApplication> ApplicationInventory::listedApplications() const
{
    QList<FoundApplication> found;
    for (const ListedApplication &listed : m_applications->applications()) {
        AppItem item = itemNamed(listed.name, listed.location);
        item.bundleIdentifier = listed.identifier;
        item.version = listed.version.isNull() ? u""_qs : listed.version;
        item.icon = listed.icon;
        found.append({item, listed});
    }
    return found;
}

FoundApplication ApplicationInventory::described(FoundApplication application) const
{
    if (application.listed)
        return application;
    AppItem &item = application.item;
    item.version = QString();
    const Result<QByteArray> contents
        = m_files->contentsOfFile(item.path.appending("Contents/Info.plist"), PropertyListLimits::mostBytes);
    if (!contents)
        return application;
    if (const Result<PropertyList> information = PropertyList::read(contents.value())) {
        item.bundleIdentifier = information.value().string(u"CFBundleIdentifier"_qs).value_or(QString());
        item.version = information.value().string(u"CFBundleShortVersionString"_qs).value_or(QString());
        item.icon = iconOf(item.path, information.value());
    }
    return application;
}

QString ApplicationInventory::iconOf(const FilePath &bundle, const PropertyList &information) const
{
    QByteArray name = information.string(u"CFBundleIconFile"_qs).value_or(QString()).toUtf8();
    if (!isPlainFileName(name))
        return {};
    if (!name.endsWith(".png"))
        name += ".png";
    const FilePath picture = bundle.appending("Contents/Resources").appending(name);
    const QString text = QString::fromUtf8(picture.bytes());
    return text.toUtf8() == picture.bytes() && m_files->fileExists(picture) ? text : QString();
}

QList<FilePath> ApplicationInventory::findLeftovers(const FoundApplication &application) const
{
    return application.listed ? m_applications->leftoversOf(*application.listed) : leftoversOfBundle(application.item);
}

QList<FilePath> ApplicationInventory::leftoversOfBundle(const AppItem &bundle) const
{
    QList<FilePath> leftovers;
    for (const LeftoverRow &row : leftoverRows) {
        // The name as it stands on disk, which need not be the one that is shown.
        const QByteArray name
            = row.name == SearchName::AppName ? nameWithoutExtension(bundle.path) : bundle.bundleIdentifier.toUtf8();
        if (!isPlainFileName(name))
            continue;
        const FilePath folder = m_files->resolvingSymlinks(m_files->homeDirectory().appending(row.folder));
        const FilePath own = folder.appending(name);
        const FilePath list = folder.appending(name + ".plist");
        if (isFound(own)) {
            if (isOffered(own))
                leftovers.append(own);
        } else if (row.mayBeList && isFound(list) && isOffered(list)) {
            leftovers.append(list);
        }
    }
    return leftovers;
}

bool ApplicationInventory::isOffered(const FilePath &candidate) const
{
    return !m_places->reasonToKeep(candidate);
}

qint64 ApplicationInventory::sizeOf(const FilePath &folder, ScannerService &scanner, const std::stop_token &task)
{
    return scanner.sizeOf(folder, task).value_or(0);
}

qint64 ApplicationInventory::sizeOf(const FoundApplication &application, ScannerService &scanner,
                                    const std::stop_token &task) const
{
    if (!application.listed)
        return sizeOf(application.item.path, scanner, task);
    return application.listed->size ? *application.listed->size : sizeOfParts(application.parts(), scanner, task);
}

qint64 ApplicationInventory::sizeOfParts(const QList<FilePath> &parts, ScannerService &scanner,
                                         const std::stop_token &task) const
{
    qint64 size = 0;
    for (const FilePath &part : parts) {
        // A part may be a single file, which a measured folder never is.
        const Result<FileAttributes> attributes = m_files->attributesOfItem(part);
        const bool isFile = attributes && attributes.value().type == EntryKind::Regular;
        size += isFile ? attributes.value().allocatedSize : sizeOf(part, scanner, task);
    }
    return size;
}

Result<void> ApplicationInventory::uninstall(const FoundApplication &application) const
{
    const Result<void> gone
        = application.listed ? m_applications->uninstall(*application.listed) : trash(application.item.path);
    return gone ? removeRelatedFiles(application.item) : gone;
}

Result<void> ApplicationInventory::trash(const FilePath &bundle) const
{
    const Result<FilePath> trashed = mayExist(bundle) ? m_files->trashItem(bundle) : Result<FilePath>(bundle);
    if (!trashed && mayExist(bundle))
        return trashed.failure();
    return {};
}

Result<void> ApplicationInventory::removeRelatedFiles(const AppItem &item) const
{
    for (const FilePath &file : item.relatedFiles) {
        const Result<void> removal = mayExist(file) ? m_files->removeItem(file) : Result<void>();
        if (!removal && !(isGone(removal) && !mayExist(file)))
            return removal;
    }
    return {};
}

Result<ApplicationInventory::Cleared> ApplicationInventory::clearData(const AppItem &item) const
{
    Cleared cleared;
    const std::unique_ptr<ScannerService> scanner = makeScanner();
    for (const FilePath &file : item.relatedFiles) {
        if (!mayExist(file))
            continue;
        const qint64 size = sizeOf(file, *scanner);
        const Result<void> removal = m_files->removeItem(file);
        if (isGone(removal) && !mayExist(file))
            continue;
        if (!removal)
            return removal.failure();
        cleared.size += size;
        ++cleared.count;
    }
    return cleared;
}

std::unique_ptr<ScannerService> ApplicationInventory::makeScanner() const
{
    return std::make_unique<ScannerService>(m_files, m_places);
}

bool ApplicationInventory::isFound(const FilePath &path) const
{
    return m_files->isAnswering(path) && m_files->fileExists(path);
}

bool ApplicationInventory::mayExist(const FilePath &path) const
{
    return !m_files->isAnswering(path) || m_files->fileExists(path);
}

} // namespace Quillmere
