#pragma once

#include "Tools/ProgramFolders.h"
#include "Tools/ToolEnd.h"
#include "Tools/ToolStep.h"
#include "Values/FilePath.h"

#include <QStringList>

namespace Quillmere {

/// What the desktop keeps of which application opens what: made from the entries of applications and the descriptions
/// of file types.
class ApplicationDatabases final
{
public:
    /// @p dataFolders those of XDG desktops, in which both stand.
    ApplicationDatabases(ProgramFolders programs, QList<FilePath> dataFolders);

    /// The user's own folder and those of the system.
    [[nodiscard]] static ApplicationDatabases ofUser();

    /// Makes those anew that this process may write; those of the system are kept by its packages.
    [[nodiscard]] QList<ToolStep> rebuild() const;

private:
    [[nodiscard]] ToolStep rebuildWith(const QString &program, const FilePath &folder, const QString &what) const;
    [[nodiscard]] ToolStep rebuildCacheOfPlasma() const;

    ProgramFolders m_programs;
    QList<FilePath> m_dataFolders;
};

/// Carries out the command `lsregister`, of which there is `-kill -r -domain local -domain system -domain user`.
[[nodiscard]] ToolEnd runLsregister(const QStringList &arguments, const ApplicationDatabases &databases);

} // namespace Quillmere
