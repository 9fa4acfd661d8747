#pragma once

#include "Platform/FileManager.h"
#include "Platform/StartupEntries.h"

#include <functional>
#include <memory>

namespace Quillmere {

/// The files of the units that systemd starts for this user, as they lie on disk. Any thread.
class UnitFiles
{
public:
    /// @p own is the user's folder of units; the others are the system's, the most important first.
    UnitFiles(std::shared_ptr<const FileManager> files, FilePath own, QList<FilePath> systems);

    [[nodiscard]] const FilePath &ownFolder() const { return m_own; }

    /// The user's own that can be enabled, and what the folders of links say is started. It is on when such a link
    /// stands and the user does not mask it. First the user's own, then those of the system, each by name.
    [[nodiscard]] QList<StartupEntry> entries() const;
    /// Whether the user has a link to nothing in the place of the unit called @p name.
    [[nodiscard]] bool isMasked(const QByteArray &name) const;
    /// Runs @p switchOff, after which a link of the user's own in the place of that unit, as `systemctl link` and tools
    /// for dotfiles make it, still stands: the manager takes it away. Of a mask nothing is kept.
    [[nodiscard]] Result<void> keepingOwnLink(const QByteArray &name,
                                              const std::function<Result<void>()> &switchOff) const;
    /// Puts such links there again that a program that was killed meanwhile has left owed.
    void giveBackOwnLinks() const;
    /// Whether the unit's file says by what it is started once it is enabled.
    [[nodiscard]] bool canBeEnabled(const FilePath &file) const;
    /// The system's most important file of that unit; empty when there is none.
    [[nodiscard]] FilePath systemFile(const QByteArray &name) const;
    /// @p path as it is called here: the manager knows a folder of the system's by another name, where that is a link.
    [[nodiscard]] FilePath fileOf(const FilePath &path) const;

private:
    /// What the folders of links in @p folder start.
    [[nodiscard]] QList<QByteArray> linkedIn(const FilePath &folder) const;

    std::shared_ptr<const FileManager> m_files;
    FilePath m_own;
    QList<FilePath> m_systems;
};

/// Whether a file of that name is a unit's.
[[nodiscard]] bool isUnit(const FilePath &path);
/// Whether it only stands for units that are made of it.
[[nodiscard]] bool isTemplate(const QByteArray &unit);
/// First the user's own, then those of all users, each by name.
void sortUnits(QList<StartupEntry> &entries);

} // namespace Quillmere
