#pragma once

#include "Models/CleanupCategory.h"
#include "Platform/Places.h"
#include "Platform/ProcessRunner.h"
#include "Services/DeveloperStorageCatalogue.h"
#include "Services/DeveloperStorageInventory.h"
#include "Services/ScannerService.h"

#include <optional>

namespace Quillmere {

/// Knows where development tools keep what they can make again, and which tools are installed. It deletes nothing, and
/// reports no failure: what is missing or cannot be read is simply not there. Copied like a value; what it scans with
/// stops it too. Runs on the thread that calls it.
class DeveloperStorageService
{
public:
    DeveloperStorageService(std::shared_ptr<const FileManager> files, std::shared_ptr<const Places> places,
                            std::shared_ptr<const ProcessRunner> processes,
                            DeveloperStorageLookup::Environment environment);

    /// The groups in which there is anything, in the order of the catalogue. Once @p scanner is cancelled or
    /// @p task is stopped, those that were finished by then.
    [[nodiscard]] QList<CleanupCategory> scanCleanupCategories(ScannerService &scanner,
                                                               const std::stop_token &task = {}) const;
    /// What is installed, to be looked at and never to be removed. Nothing where nothing is, or once @p scanner is
    /// cancelled or @p task is stopped. It waits for each language's program, for three seconds at most.
    [[nodiscard]] std::optional<CleanupCategory> scanInstalledTools(ScannerService &scanner,
                                                                    const std::stop_token &task = {}) const;

private:
    struct Inventory;
    struct Scan;

    /// The places of a group that exist and may be offered, by the names that they are shown with: the program's own,
    /// and behind them those of this platform that none of the others holds or lies in. None once the scan
    /// is over.
    [[nodiscard]] QList<PlaceEntry> offeredPlaces(const CleanupGroup &group, const Scan &scan) const;
    /// Nothing once the scan is over: a group is whole or not there.
    [[nodiscard]] std::optional<QList<CleanupItem>> itemsOf(const CleanupGroup &group, const Scan &scan) const;
    [[nodiscard]] bool mayBeOffered(const FilePath &path) const;

    /// False once the scan is over.
    [[nodiscard]] bool takeRoots(Inventory &inventory, const Scan &scan) const;
    [[nodiscard]] bool takeRuntimes(Inventory &inventory, const Scan &scan) const;
    [[nodiscard]] QString executableVersion(const Runtime &runtime) const;

    DeveloperStorageLookup m_lookup;
    std::shared_ptr<const Places> m_places;
    std::shared_ptr<const ProcessRunner> m_processes;
};

} // namespace Quillmere
