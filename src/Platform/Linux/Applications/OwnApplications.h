#pragma once

#include "Platform/FileManager.h"
#include "Platform/InstalledApplications.h"
#include "Platform/Linux/Applications/DesktopEntry.h"

#include <memory>

namespace Quillmere {

/// What users install for themselves without a tool that remembers it: AppImages, and programs with a desktop entry in
/// their own folder of entries.
class OwnApplications
{
public:
    /// @p entries are all of the user's own that are shown; @p home is free of links.
    OwnApplications(std::shared_ptr<const FileManager> files, FilePath home, QList<DesktopEntry> entries);

    /// Those in the folders where AppImages are usually put, and behind them those that entries start from elsewhere
    /// in the home. Known by the first of its entries, all of which are parts of it; one without has but its file, and
    /// takes the name of that for its id.
    [[nodiscard]] QList<ListedApplication> appImages() const;
    /// Whether @p entry starts one of those.
    [[nodiscard]] bool startsAppImage(const DesktopEntry &entry) const;
    /// The application of an entry of another program: with the folder that it alone is installed in, or its program
    /// where nobody else starts that, or else the entry alone.
    [[nodiscard]] ListedApplication programOf(const DesktopEntry &entry) const;

private:
    [[nodiscard]] QList<FilePath> images() const;
    [[nodiscard]] ListedApplication imageAt(const FilePath &image) const;
    /// Empty when it is not sure.
    [[nodiscard]] FilePath ownFolderOf(const DesktopEntry &entry) const;
    [[nodiscard]] bool holdsOtherPrograms(const FilePath &folder, const FilePath &program) const;
    [[nodiscard]] bool isOwnProgram(const DesktopEntry &entry) const;

    std::shared_ptr<const FileManager> m_files;
    FilePath m_home;
    QList<DesktopEntry> m_entries;
};

/// What is known of an application by its entry: all but where it is and what it consists of.
[[nodiscard]] ListedApplication applicationOf(const DesktopEntry &entry);

} // namespace Quillmere
