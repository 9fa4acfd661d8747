#include "Services/ApplicationInventory.h"

#include "Utilities/PropertyList.h"
#include "Utilities/PropertyListLimits.h"
#include "Values/CancellationError.h"
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

QList<FilePath> ApplicationInventory::bundlesIn(const FilePath &root) const
{
    QList<FilePath> bundles;
    for (const DirectoryEntry &entry : m_files->contentsOfDirectory(root, HiddenFiles::Skip).valueOr({})) {
        if (entry.path.pathExtension() == bundleExtension)
            bundles.append(entry.path);
    }
    return bundles;
}

QList<ListedApplication> ApplicationInventory::listedApplications() const
{
    return m_applications->applications();
}

AppItem ApplicationInventory::itemOf(const FilePath &bundle) const
{
    AppItem item;
    item.name = FilePath::displayText(nameWithoutExtension(bundle));
    item.path = bundle;
    item.version = QString();
    const Result<QByteArray> contents
        = m_files->contentsOfFile(bundle.appending("Contents/Info.plist"), PropertyListLimits::mostBytes);
    if (!contents)
        return item;
    if (const Result<PropertyList> information = PropertyList::read(contents.value())) {
        item.bundleIdentifier = information.value().string(u"CFBundleIdentifier"_qs).value_or(QString());
        item.version = information.value().string(u"CFBundleShortVersionString"_qs).value_or(QString());
        item.icon = iconOf(bundle, information.value());
    }
    return item;
}

AppItem ApplicationInventory::itemOf(const ListedApplication &application) const
{
    AppItem item;
    item.name = application.name;
    item.bundleIdentifier = application.identifier;
    item.path = application.location;
    item.version = application.version.isNull() ? u""_qs : application.version;
    item.icon = application.icon;
    return item;
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

QList<FilePath> ApplicationInventory::findLeftovers(const QString &bundleId, const QByteArray &appName) const
{
    QList<FilePath> leftovers;
    for (const LeftoverRow &row : leftoverRows) {
        const QByteArray name = row.name == SearchName::AppName ? appName : bundleId.toUtf8();
        if (!isPlainFileName(name))
            continue;
        const FilePath folder = m_files->resolvingSymlinks(m_files->homeDirectory().appending(row.folder));
        const FilePath own = folder.appending(name);
        const FilePath list = folder.appending(name + ".plist");
        if (m_files->fileExists(own)) {
            if (isOffered(own))
                leftovers.append(own);
        } else if (row.mayBeList && m_files->fileExists(list) && isOffered(list)) {
            leftovers.append(list);
        }
    }
    return leftovers;
}

bool ApplicationInventory::isOffered(const FilePath &candidate) const
{
    return !m_places->reasonToKeep(candidate);
}

QList<FilePath> ApplicationInventory::findLeftovers(const ListedApplication &application) const
{
    return m_applications->leftoversOf(application);
}

qint64 ApplicationInventory::sizeOf(const FilePath &folder, ScannerService &scanner, const std::stop_token &task)
{
    try {
        return scanner.scanDirectory(folder, task).allocatedSize;
    } catch (const CancellationError &) {
        return 0;
    }
}

qint64 ApplicationInventory::sizeOf(const ListedApplication &application, ScannerService &scanner,
                                    const std::stop_token &task) const
{
    if (application.size)
        return *application.size;
    qint64 size = 0;
    for (const FilePath &part : application.parts) {
        // A part may be a single file, which a measured folder never is.
        const Result<FileAttributes> attributes = m_files->attributesOfItem(part);
        const bool isFile = attributes && attributes.value().type == EntryKind::Regular;
        size += isFile ? attributes.value().allocatedSize : sizeOf(part, scanner, task);
    }
    return size;
}

Result<void> ApplicationInventory::uninstall(const AppItem &item) const
{
    if (exists(item.path)) {
        const Result<FilePath> trashed = m_files->trashItem(item.path);
        if (!trashed && exists(item.path))
            return trashed.failure();
    }
    return removeRelatedFiles(item);
}

Result<void> ApplicationInventory::uninstall(const AppItem &item, const ListedApplication &application) const
{
    if (const Result<void> done = m_applications->uninstall(application); !done)
        return done;
    return removeRelatedFiles(item);
}

Result<void> ApplicationInventory::removeRelatedFiles(const AppItem &item) const
{
    for (const FilePath &file : item.relatedFiles) {
        const Result<void> removal = exists(file) ? m_files->removeItem(file) : Result<void>();
        if (!removal && !(isGone(removal) && !exists(file)))
            return removal;
    }
    return {};
}

Result<ApplicationInventory::Cleared> ApplicationInventory::clearData(const AppItem &item) const
{
    Cleared cleared;
    const std::unique_ptr<ScannerService> scanner = makeScanner();
    for (const FilePath &file : item.relatedFiles) {
        if (!exists(file))
            continue;
        const qint64 size = sizeOf(file, *scanner);
        const Result<void> removal = m_files->removeItem(file);
        if (isGone(removal) && !exists(file))
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

bool ApplicationInventory::exists(const FilePath &path) const
{
    return m_files->fileExists(path);
}

} // namespace Quillmere
