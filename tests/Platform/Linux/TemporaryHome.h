#pragma once

#include "Platform/Linux/Programs/UserEnvironment.h"

#include <QByteArray>
#include <QDir>
#include <QList>
#include <QTemporaryDir>

namespace Quillmere {

/// A folder of its own for one test, with a home in it. Everything is named relative to that folder.
class TemporaryHome
{
public:
    /// Below @p parent, or where temporary files belong.
    explicit TemporaryHome(const QString &parent = QDir::tempPath());
    ~TemporaryHome();
    Q_DISABLE_COPY_MOVE(TemporaryHome)

    /// Home "home", data home "home/.local/share", the user who runs the test.
    [[nodiscard]] UserEnvironment environment() const;
    [[nodiscard]] FilePath path(const QByteArray &relative = {}) const;
    [[nodiscard]] FilePath trash() const { return path("home/.local/share/Trash"); }

    // Building. Missing folders above are made.
    FilePath addFile(const QByteArray &relative, const QByteArray &contents = "contents") const;
    FilePath addFolder(const QByteArray &relative) const;
    FilePath addLink(const QByteArray &relative, const QByteArray &target) const;

    // Looking; links are not followed.
    [[nodiscard]] bool exists(const QByteArray &relative) const;
    [[nodiscard]] QByteArray contents(const QByteArray &relative) const; ///< Null when it cannot be read.
    [[nodiscard]] QList<QByteArray> names(const QByteArray &relative) const; ///< Sorted; empty for no folder.
    [[nodiscard]] mode_t mode(const QByteArray &relative) const; ///< The rights alone.

private:
    QTemporaryDir m_folder;
    FilePath m_root; ///< Its location, free of links.
};

/// Of any location.
[[nodiscard]] bool itemExists(const FilePath &path);
[[nodiscard]] QByteArray contentsOf(const FilePath &path);
[[nodiscard]] QList<QByteArray> namesIn(const FilePath &folder);
void writeFile(const FilePath &path, const QByteArray &contents);

} // namespace Quillmere
