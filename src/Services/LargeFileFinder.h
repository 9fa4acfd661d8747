#pragma once

#include "Models/FileItem.h"
#include "Platform/FileManager.h"
#include "Platform/Places.h"

#include <functional>
#include <memory>

namespace Quillmere {

/// One walk through the folders in which large files are looked for. Runs on the thread that calls it.
class LargeFileFinder
{
public:
    /// A fraction from 0 to 1 and the name of the item that is looked at. Called on any thread, one call at a time.
    using Progress = std::function<void(double fraction, const QString &name)>;

    LargeFileFinder(std::shared_ptr<const FileManager> files, std::shared_ptr<const Places> places, Progress progress,
                    Cancellation cancellation);

    /// The files in the order of their folders and, in each, of their paths. None once it was stopped.
    [[nodiscard]] std::optional<QList<FileItem>> find();

private:
    /// One of the program's own folders and what this platform has behind it: they share a part of the progress.
    void scanFolders(const QList<FilePath> &folders, double baseProgress, double nextProgress);
    void scanDirectory(const FilePath &folder, double baseProgress, double nextProgress);
    [[nodiscard]] QList<FilePath> existingFolders(const QByteArray &name);
    /// Where @p folder truly is, unless that is walked already or holds the home.
    [[nodiscard]] std::optional<FilePath> placeToWalk(const FilePath &folder) const;

    const std::shared_ptr<const FileManager> m_files;
    const std::shared_ptr<const Places> m_places;
    const Progress m_progress;
    const Cancellation m_cancellation;
    const FilePath m_home;
    QList<FilePath> m_taken; ///< True places of all folders walked or about to be.
    QList<FileItem> m_found;
};

} // namespace Quillmere
