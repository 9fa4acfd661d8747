#pragma once

#include "Models/CleanupCategory.h"
#include "Platform/FileManager.h"
#include "Platform/Places.h"

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>

namespace Quillmere {

/// Measures folders, and turns the user's cache, log, container and temporary folders into categories of removable
/// items. Reusable: each run begins with resetCancellation(). It reads no setting, and what cannot be read is
/// passed over in silence. Scans run on the thread that calls them.
class ScannerService
{
public:
    /// A fraction from 0 to 1 and what is being looked at. Called on the scanning thread.
    using Progress = std::function<void(double fraction, const QString &text)>;

    ScannerService(std::shared_ptr<const FileManager> files, std::shared_ptr<const Places> places);

    /// Any thread.
    [[nodiscard]] bool isCancelled() const;
    void resetCancellation();

    /// All four categories in their order, empty ones too. Throws CancellationError once stopped, by cancelScan() or
    /// through @p task, and never returns a part.
    [[nodiscard]] QList<CleanupCategory> scanSafeCategories(const Progress &progress, const std::stop_token &task = {});
    /// The one measure of a folder: allocated bytes and count of the regular files in its whole tree, links not
    /// followed. Zero where there is nothing to enumerate. Throws CancellationError once stopped.
    [[nodiscard]] TreeSize scanDirectory(const FilePath &folder, const std::stop_token &task = {});

    /// The allocated bytes alone. Nothing once the walk was stopped; 0 where it failed in any other way.
    [[nodiscard]] std::optional<qint64> sizeOf(const FilePath &folder, const std::stop_token &task = {});

    /// Stops a running scan and every later one until resetCancellation(). Any thread, at any time.
    void cancelScan();

private:
    struct CategoryRow;
    struct Slice;
    struct Walk;
    struct Found;

    void testForCancellation(const std::stop_token &task) const;
    [[nodiscard]] Cancellation cancellation(const std::stop_token &task) const;
    [[nodiscard]] QList<PlaceRow> existingRows(const CategoryRow &row) const;
    void scanCategory(const CategoryRow &row, const Walk &walk, CleanupCategory &category);
    /// The items of @p place appended to @p found, each an immediate child or what it keeps at the place's suffix.
    void scanPlace(const PlaceRow &place, const CategoryRow &row, const Slice &slice, const Walk &walk, Found &found);

    /// What may become an item of a root's child: the child, when it is a folder. A file or link holds nothing to
    /// measure, and what is mounted there is no part of the root.
    [[nodiscard]] std::optional<FilePath> offeredChild(const DirectoryEntry &child) const;
    /// The same of a child that keeps at @p suffix what is offered: below no link, since removal refuses those.
    [[nodiscard]] std::optional<FilePath> offeredInside(const FilePath &child, const QByteArray &suffix) const;

    std::shared_ptr<const FileManager> m_files;
    std::shared_ptr<const Places> m_places;
    mutable std::mutex m_stateLock; ///< Around the two members below, for one read or write at a time.
    bool m_cancelled = false;
    std::stop_source m_stop; ///< Says the same as m_cancelled to walks already under way.
};

} // namespace Quillmere
