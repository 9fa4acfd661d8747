#pragma once

#include "Models/CleanupItem.h"
#include "Models/CleanupResult.h"
#include "Platform/FileManager.h"
#include "Platform/Places.h"

#include <functional>
#include <memory>

namespace Quillmere {

/// The one place where selected items become removed files. It holds nothing but the way to the disk, so any number
/// of runs may be under way at once. Runs on the thread that calls it.
class CleanupService
{
public:
    /// How far a run has come, from 0 to 1. Called on the working thread.
    using Progress = std::function<void(double fraction)>;

    CleanupService(std::shared_ptr<const FileManager> files, std::shared_ptr<const Places> places);

    /// Removes what passes validateBeforeCleanup(), item after item, to its end: there is no cancelling. With
    /// @p moveToTrash every item goes to the Trash; without, only safe cache and temporary items are deleted and the
    /// others are skipped without a word. What lies on a volume that does not answer is passed over as a failure.
    [[nodiscard]] CleanupResult cleanItems(const QList<CleanupItem> &items, bool moveToTrash,
                                           const Progress &progress) const;
    /// Sees safely onto disk what a run over @p items has done, which may take as long as it likes. For a worker
    /// thread, once the run is recorded.
    void synchronize(const QList<CleanupItem> &items, const CleanupResult &result) const;
    /// The last gate: those of @p items that may be touched, in the same order. It does not trust the scanners, and
    /// a refused item leaves no trace.
    [[nodiscard]] QList<CleanupItem> validateBeforeCleanup(const QList<CleanupItem> &items) const;

private:
    [[nodiscard]] bool mayBeTouched(const CleanupItem &item) const;
    /// Fails as Protected when @p item has come to hold something that is kept since it was scanned.
    [[nodiscard]] Result<void> remove(const CleanupItem &item, bool moveToTrash) const;

    std::shared_ptr<const FileManager> m_files;
    std::shared_ptr<const Places> m_places;
};

} // namespace Quillmere
