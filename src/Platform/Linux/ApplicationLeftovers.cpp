#include "Platform/Linux/ApplicationLeftovers.h"

#include "Platform/Linux/ApplicationData.h"
#include "Platform/Linux/UserFolders.h"

#include <algorithm>

namespace Quillmere {

bool isPlainFileName(const QByteArray &name)
{
    return !name.isEmpty() && name != "." && name != ".." && !name.contains('/') && !name.contains('\0');
}

ApplicationLeftovers::ApplicationLeftovers(std::shared_ptr<const FileManager> files,
                                           std::shared_ptr<const Places> places,
                                           const BaseDirectories::Environment &environment)
    : m_files(std::move(files))
    , m_places(std::move(places))
{
    const FilePath home = m_files->homeDirectory();
    const BaseDirectories base = BaseDirectories::of(home, environment);
    m_rows = {
        {base.config, {}, true},
        {base.data, {}, true},
        {base.state, {}, false},
        {base.cache, {}, false},
        {home.appending(".var/app"), {}, false},
        {base.config.appending("autostart"), ".desktop", true},
        {base.data.appending("applications"), ".desktop", true},
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

QList<FilePath> ApplicationLeftovers::of(const QByteArray &id) const
{
    QList<FilePath> found;
    if (!isPlainFileName(id) || ApplicationData::builtIn().isSharedName(id))
        return found;
    for (const Row &row : m_rows) {
        const FilePath candidate = row.folder.appending(id + row.suffix);
        if (m_files->fileExists(candidate) && mayGo(candidate, row) && !found.contains(candidate))
            found.append(candidate);
    }
    return found;
}

bool ApplicationLeftovers::mayGo(const FilePath &candidate, const Row &row) const
{
    const bool holdsShared
        = std::ranges::any_of(m_shared, [&](const FilePath &shared) { return shared.isWithin(candidate); });
    return !holdsShared && (row.isSettings || !m_places->reasonToKeep(candidate));
}

} // namespace Quillmere
