#pragma once

#include "Platform/FileManager.h"
#include "Platform/Linux/Places/BaseDirectories.h"
#include "Platform/StartupEntries.h"

#include <memory>

namespace Quillmere {

class DesktopEntryText;

/// What the desktop starts at login: the desktop entries in `autostart` of the user's folder for settings and of the
/// system's. An entry of the user's stands in the place of the system's of the same name, and that is how one of the
/// system's is switched: by a copy in the user's folder, which goes again when it says nothing of its own any more.
/// What the user wrote is kept, and the system's files are never written. Any thread.
class AutostartEntries
{
public:
    /// @p languages of the names, the dearest first, such as "ru_RU" and "ru".
    AutostartEntries(std::shared_ptr<const FileManager> files, BaseDirectories::Environment environment,
                     QList<QByteArray> languages);

    /// First the user's own, then those that the system brings, each by the names of their files. Left out is what
    /// would not start however it is switched: meant for other desktops, without its program, or no application at all.
    [[nodiscard]] QList<StartupEntry> entries() const;
    [[nodiscard]] bool owns(const FilePath &path) const;
    [[nodiscard]] Result<void> setEnabled(const FilePath &path, bool enabled) const;

private:
    /// The same where the user has an entry of their own at @p own, whose lines stay.
    [[nodiscard]] Result<void> setOwnEnabled(const FilePath &own, const DesktopEntryText &system, bool enabled) const;
    [[nodiscard]] QList<QByteArray> namesIn(const FilePath &folder) const;
    /// The most important of the system's files of that name; empty when there is none.
    [[nodiscard]] FilePath systemFile(const QByteArray &name) const;
    [[nodiscard]] DesktopEntryText read(const FilePath &file) const;
    [[nodiscard]] std::optional<StartupEntry> ownEntry(const QByteArray &name) const;
    [[nodiscard]] std::optional<StartupEntry> systemEntry(const QByteArray &name) const;
    [[nodiscard]] bool startsHere(const DesktopEntryText &entry) const;
    [[nodiscard]] bool isForThisDesktop(const DesktopEntryText &entry) const;
    [[nodiscard]] bool hasProgram(const QByteArray &tried) const;
    [[nodiscard]] QString nameOf(const DesktopEntryText &entry, const FilePath &file) const;
    [[nodiscard]] Result<void> write(const FilePath &file, const QByteArray &text) const;

    std::shared_ptr<const FileManager> m_files;
    BaseDirectories::Environment m_environment;
    QList<QByteArray> m_languages;
    FilePath m_ownFolder;
    QList<FilePath> m_systemFolders; ///< The most important first.
};

} // namespace Quillmere
