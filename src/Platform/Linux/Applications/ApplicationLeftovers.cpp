#include "Platform/Linux/Applications/ApplicationLeftovers.h"

#include "Platform/Linux/Applications/ApplicationData.h"
#include "Platform/Linux/Applications/DesktopEntryText.h"
#include "Platform/Linux/Places/UserFolders.h"
#include "Values/FileName.h"

#include <algorithm>

namespace Quillmere {

ApplicationLeftovers::ApplicationLeftovers(std::shared_ptr<const FileManager> files,
                                           std::shared_ptr<const Places> places, const QList<FilePath> &systemEntries,
                                           const BaseDirectories::Environment &environment)
    : m_files(std::move(files))
    , m_places(std::move(places))
{
    const FilePath home = m_files->homeDirectory();
    const BaseDirectories base = BaseDirectories::of(home, environment);
    QList<FilePath> systemAutostart;
    for (const FilePath &folder : BaseDirectories::systemConfig(environment))
        systemAutostart.append(folder.appending("autostart"));
    m_rows = {
        {base.config, {}, Holds::FilesOfOthers, true, {}},
        {base.data, {}, Holds::FilesOfOthers, true, {}},
        {base.state, {}, Holds::FilesOfOthers, false, {}},
        {base.cache, {}, Holds::FilesOfOthers, false, {}},
        {home.appending(".var/app"), {}, Holds::FilesOfFlatpaks, false, {}},
        {base.config.appending("autostart"), ".desktop", Holds::Entries, true, systemAutostart},
        {base.data.appending("applications"), ".desktop", Holds::Entries, true, systemEntries},
    };
    m_shared = {home, m_files->temporaryDirectory()};
    for (Row &row : m_rows) {
        // Removal refuses a location below a link.
        row.folder = m_files->resolvingSymlinks(row.folder);
        m_shared.append(row.folder);
    }
    const UserFolders folders = UserFolders::read(*m_files, home, base.config);
    for (const FilePath &folder : folders.locations)
        m_shared.append(m_files->resolvingSymlinks(folder));
}

QList<FilePath> ApplicationLeftovers::of(const QByteArray &id, Packaging packaging) const
{
    QList<FilePath> found;
    if (!isPlainFileName(id) || ApplicationData::builtIn().isSharedName(id))
        return found;
    for (const Row &row : m_rows) {
        const FilePath candidate = row.folder.appending(id + row.suffix);
        const bool isThere = m_files->isAnswering(candidate) && m_files->fileExists(candidate)
            && packagingOf(candidate, row) == packaging;
        if (isThere && mayGo(candidate, row) && !found.contains(candidate))
            found.append(candidate);
    }
    return found;
}

ApplicationLeftovers::Packaging ApplicationLeftovers::packagingOf(const FilePath &candidate, const Row &row) const
{
    if (row.holds == Holds::Entries)
        return packagingOfEntry(candidate);
    return row.holds == Holds::FilesOfFlatpaks ? Packaging::Flatpak : Packaging::Any;
}

ApplicationLeftovers::Packaging ApplicationLeftovers::packagingOfEntry(const FilePath &entry) const
{
    const DesktopEntryText text = DesktopEntryText::read(*m_files, entry).valueOr(DesktopEntryText());
    // Both the tool, which exports the entry, and the portal, which has it start at login, leave this mark.
    return text.value("X-Flatpak") ? Packaging::Flatpak : Packaging::Any;
}

bool ApplicationLeftovers::mayGo(const FilePath &candidate, const Row &row) const
{
    const bool holdsShared
        = std::ranges::any_of(m_shared, [&](const FilePath &shared) { return shared.isWithin(candidate); });
    // What the user changed of it, such as that it does not start at login, is no file of the application's.
    const bool isInTheSystemsPlace = std::ranges::any_of(row.systems, [&](const FilePath &folder) {
        return m_files->fileExists(folder.appending(candidate.lastPathComponent()));
    });
    return !holdsShared && !isInTheSystemsPlace && (row.isSettings || !m_places->reasonToKeep(candidate));
}

} // namespace Quillmere
