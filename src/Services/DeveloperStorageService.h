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

    /// The groups in which there is anything, in the order of the catalogue. Once @p scanner is cancelled, those that
    /// were finished by then.
    [[nodiscard]] QList<CleanupCategory> scanCleanupCategories(ScannerService &scanner) const;
    /// What is installed, to be looked at and never to be removed. Nothing where nothing is, or once @p scanner is
    /// cancelled. It waits for each language's program, for three seconds at most.
    [[nodiscard]] std::optional<CleanupCategory> scanInstalledTools(ScannerService &scanner) const;

private:
    struct Inventory;

    /// The places of a group that exist and may be offered, by the names that they are shown with: the program's own,
    /// and behind them those of this platform that none of the others holds or lies in. None once @p scanner is
    /// cancelled.
    [[nodiscard]] QList<PlaceEntry> offeredPlaces(const CleanupGroup &group, const ScannerService &scanner) const;
    /// Nothing once the scanner is cancelled: a group is whole or not there.
    [[nodiscard]] std::optional<QList<CleanupItem>> itemsOf(const CleanupGroup &group, ScannerService &scanner) const;
    [[nodiscard]] bool mayBeOffered(const FilePath &path) const;

    /// False once the scanner is cancelled.
    [[nodiscard]] bool takeRoots(Inventory &inventory, ScannerService &scanner) const;
    [[nodiscard]] bool takeRuntimes(Inventory &inventory, ScannerService &scanner) const;
    [[nodiscard]] QString executableVersion(const Runtime &runtime) const;

    DeveloperStorageLookup m_lookup;
    std::shared_ptr<const Places> m_places;
    std::shared_ptr<const ProcessRunner> m_processes;
};

} // namespace Quillmere
