#pragma once

#include "Platform/FileManager.h"
#include "Platform/Places.h"
#include "Services/FoundApplication.h"
#include "Services/ScannerService.h"

#include <memory>

namespace Quillmere {

class PropertyList;

/// Finds applications and the files that belong to them, and removes either. Holds nothing but the ways to the machine,
/// so it is passed and copied like a value. Works on the thread that calls it.
class ApplicationInventory
{
public:
    /// What was removed of an application's files.
    struct Cleared
    {
        qint64 size = 0; ///< Bytes, each measured before it went.
        qint64 count = 0;
    };

    ApplicationInventory(std::shared_ptr<const FileManager> files, std::shared_ptr<const Places> places,
                         std::shared_ptr<const InstalledApplications> applications);

    /// The folders whose immediate children are bundles, in their order, free of links.
    [[nodiscard]] QList<FilePath> roots() const;
    /// By their names and places alone, in the order of the listing; none of a root that cannot be listed.
    [[nodiscard]] QList<FoundApplication> bundlesIn(const FilePath &root) const;
    /// What the platform adds behind them.
    [[nodiscard]] QList<FoundApplication> listedApplications() const;

    /// With what a bundle says of itself; its size and its related files are left for later.
    [[nodiscard]] FoundApplication described(FoundApplication application) const;
    /// Of a bundle by exact names, at most one in each folder of the table. A name that would lead out of its folder
    /// finds nothing.
    [[nodiscard]] QList<FilePath> findLeftovers(const FoundApplication &application) const;

    /// Bytes on disk. Zero when @p scanner or @p task was stopped.
    [[nodiscard]] static qint64 sizeOf(const FilePath &folder, ScannerService &scanner,
                                       const std::stop_token &task = {});
    [[nodiscard]] qint64 sizeOf(const FoundApplication &application, ScannerService &scanner,
                                const std::stop_token &task = {}) const;

    /// A bundle to the Trash, another the way that the platform knows, and then its related files deleted for good. The
    /// first failure ends it.
    [[nodiscard]] Result<void> uninstall(const FoundApplication &application) const;
    /// Deletes its related files for good, and keeps the application. The first failure ends it.
    [[nodiscard]] Result<Cleared> clearData(const AppItem &item) const;

    [[nodiscard]] std::unique_ptr<ScannerService> makeScanner() const;

private:
    /// Neither waits for a volume that does not answer: nothing is found on it, and what was there may be.
    [[nodiscard]] bool isFound(const FilePath &path) const;
    [[nodiscard]] bool mayExist(const FilePath &path) const;
    [[nodiscard]] QList<FilePath> leftoversOfBundle(const AppItem &bundle) const;
    [[nodiscard]] qint64 sizeOfParts(const QList<FilePath> &parts, ScannerService &scanner,
                                     const std::stop_token &task) const;
    [[nodiscard]] Result<void> trash(const FilePath &bundle) const;
    /// The picture that the bundle shows itself by, where it has one that desktops of this platform can draw.
    [[nodiscard]] QString iconOf(const FilePath &bundle, const PropertyList &information) const;
    [[nodiscard]] bool isOffered(const FilePath &candidate) const;
    [[nodiscard]] Result<void> removeRelatedFiles(const AppItem &item) const;

    std::shared_ptr<const FileManager> m_files;
    std::shared_ptr<const Places> m_places;
    std::shared_ptr<const InstalledApplications> m_applications;
};

} // namespace Quillmere
