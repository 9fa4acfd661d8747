#include "Services/DeveloperStorageLookup.h"

#include <QSet>

#include <utility>

namespace Quillmere {

DeveloperStorageLookup::DeveloperStorageLookup(std::shared_ptr<const FileManager> files, Environment environment)
    : m_files(std::move(files))
    , m_environment(std::move(environment))
{
}

std::optional<FilePath> DeveloperStorageLookup::environmentLocation(const char *name) const
{
    const QByteArray value = m_environment(name);
    if (value.isEmpty())
        return std::nullopt;
    return (value.startsWith('/') ? FilePath(value) : FilePath("/").appending(value)).standardized();
}

QList<FilePath> DeveloperStorageLookup::matchingChildren(const FilePath &folder, const QByteArray &prefix) const
{
    QList<FilePath> children;
    if (!m_files->isAnswering(folder))
        return children;
    for (const DirectoryEntry &entry : m_files->contentsOfDirectory(folder, HiddenFiles::Skip).valueOr({})) {
        if (entry.path.lastPathComponent().startsWith(prefix))
            children.append(entry.path);
    }
    return children;
}

QList<FilePath> DeveloperStorageLookup::existingUnique(const QList<FilePath> &locations) const
{
    QList<FilePath> unique;
    QSet<FilePath> seen;
    for (const FilePath &location : locations) {
        if (!exists(location))
            continue;
        const FilePath key = keyOf(location);
        if (seen.contains(key))
            continue;
        seen.insert(key);
        unique.append(location);
    }
    return unique;
}

bool DeveloperStorageLookup::exists(const FilePath &location) const
{
    return m_files->isAnswering(location) && m_files->fileExists(location);
}

FilePath DeveloperStorageLookup::keyOf(const FilePath &location) const
{
    return m_files->resolvingSymlinks(location.standardized());
}

} // namespace Quillmere
