#pragma once

#include "Platform/FileManager.h"
#include "Platform/Linux/Places/BaseDirectories.h"
#include "Platform/Places.h"

#include <memory>

namespace Quillmere {

/// Finds the user's files that are named exactly after an application, in the folders where XDG desktops keep such.
class ApplicationLeftovers
{
public:
    /// @p systemEntries are the system's folders of desktop entries.
    ApplicationLeftovers(std::shared_ptr<const FileManager> files, std::shared_ptr<const Places> places,
                         const QList<FilePath> &systemEntries, const BaseDirectories::Environment &environment);

    /// An application may be installed as a Flatpak and otherwise too, under one name, and not every installation can
    /// be seen from here. So what one of them keeps is never the other's, whether or not there is another.
    enum class Packaging { Any, Flatpak };

    /// In the order of the folders, and only what exists. Nothing for a name that leads elsewhere, and nothing that
    /// belongs to many applications, such as a folder of all entries.
    [[nodiscard]] QList<FilePath> of(const QByteArray &id, Packaging packaging) const;

private:
    /// Whose files a folder holds. Entries lie side by side, and say which are of Flatpaks.
    enum class Holds { FilesOfFlatpaks, FilesOfOthers, Entries };

    struct Row
    {
        FilePath folder;
        QByteArray suffix;
        Holds holds = Holds::FilesOfOthers;
        bool isSettings = false; ///< Settings and data are kept from cleaning, and go with their application alone.
        QList<FilePath> systems; ///< Where the system keeps what one here would take the place of.
    };

    [[nodiscard]] Packaging packagingOf(const FilePath &candidate, const Row &row) const;
    [[nodiscard]] Packaging packagingOfEntry(const FilePath &entry) const;
    [[nodiscard]] bool mayGo(const FilePath &candidate, const Row &row) const;

    std::shared_ptr<const FileManager> m_files;
    std::shared_ptr<const Places> m_places;
    QList<Row> m_rows;
    QList<FilePath> m_shared; ///< Folders of which none may go, nor one that holds them.
};

} // namespace Quillmere
