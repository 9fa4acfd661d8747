#pragma once

#include <QString>
#include <QStringList>

namespace Quillmere {

/// Where programs of the system are looked for.
class ProgramFolders final
{
public:
    explicit ProgramFolders(QStringList folders);

    /// Those that only root writes to.
    [[nodiscard]] static ProgramFolders ofSystem();
    /// Those of the user's PATH.
    [[nodiscard]] static ProgramFolders ofUser();

    /// The first of @p names that is there, absolute. Empty where none is.
    [[nodiscard]] QString find(const QStringList &names) const;

private:
    QStringList m_folders;
};

} // namespace Quillmere
