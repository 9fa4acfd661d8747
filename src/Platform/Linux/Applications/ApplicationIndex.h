#pragma once

#include "Platform/Linux/Applications/DesktopEntry.h"

#include <QHash>

namespace Quillmere {

/// Finds the application that a trace of a process points to. Immutable; any thread. No answer is nullptr; where
/// several applications could be meant, the one that is started without arguments is, or else none.
class ApplicationIndex
{
public:
    ApplicationIndex(QList<DesktopEntry> entries, FilePath home);

    [[nodiscard]] const DesktopEntry *byId(const QByteArray &id) const;
    [[nodiscard]] const DesktopEntry *byFile(const FilePath &file) const;
    /// By the program itself, by the table of identities, or by the folder that the application is installed in.
    [[nodiscard]] const DesktopEntry *byProgram(const FilePath &program) const;
    /// By the very text that an interpreter runs, which may be named through links.
    [[nodiscard]] const DesktopEntry *byScript(const FilePath &script) const;

    /// What an application is whose program is @p program: its install folder, else the program itself.
    [[nodiscard]] FilePath locationOf(const FilePath &program) const;

private:
    using Places = QHash<FilePath, QList<qsizetype>>;

    [[nodiscard]] const DesktopEntry *only(const Places &places, const FilePath &path) const;

    QList<DesktopEntry> m_entries;
    FilePath m_home;
    QHash<QByteArray, qsizetype> m_byId;
    QHash<FilePath, qsizetype> m_byFile;
    Places m_byExecutable;
    Places m_byFolder;
};

} // namespace Quillmere
