#pragma once

#include "Platform/FileManager.h"

#include <functional>
#include <memory>

namespace Quillmere {

/// How the catalogue of developer storage finds its way about the disk. Copied like a value; any thread.
class DeveloperStorageLookup
{
public:
    /// Gives the value of an environment variable; empty when it is not set.
    using Environment = std::function<QByteArray(const char *name)>;

    DeveloperStorageLookup(std::shared_ptr<const FileManager> files, Environment environment);

    /// What the variable says. Nothing where it is missing or empty. A relative text is taken below the root folder:
    /// the folder that the program happens to have been started in means nothing.
    [[nodiscard]] std::optional<FilePath> environmentLocation(const char *name) const;
    /// The visible children of @p folder whose names begin with @p prefix, in the order of the listing. None where it
    /// cannot be listed.
    [[nodiscard]] QList<FilePath> matchingChildren(const FilePath &folder, const QByteArray &prefix = {}) const;
    /// Links followed. What lies on a volume that does not answer is as good as not there.
    [[nodiscard]] bool exists(const FilePath &location) const;
    /// Those of @p locations that exist, as they are written there: the first of each group that leads to one place.
    [[nodiscard]] QList<FilePath> existingUnique(const QList<FilePath> &locations) const;
    /// By what two locations are known to be one: every link followed.
    [[nodiscard]] FilePath keyOf(const FilePath &location) const;

    [[nodiscard]] FilePath home() const { return m_files->homeDirectory(); }
    [[nodiscard]] FilePath library() const { return home().appending("Library"); }
    [[nodiscard]] const FileManager &files() const { return *m_files; }

private:
    std::shared_ptr<const FileManager> m_files;
    Environment m_environment;
};

} // namespace Quillmere
