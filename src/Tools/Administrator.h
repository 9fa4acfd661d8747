#pragma once

#include "Tools/Disks/DiskAdministrator.h"
#include "Tools/KeepAwake.h"
#include "Tools/ToolEnd.h"

#include <QStringList>

namespace Quillmere {

/// The one program that acts with an administrator's rights. It believes nothing that it is told: whoever started it
/// may be anybody whom the system's password dialog let through.
class Administrator final
{
public:
    /// @p isRoot whether this process is root's, by its real and its effective user.
    Administrator(KeepAwake keepAwake, FilePath dropCaches, DiskAdministrator disks, bool isRoot);

    /// @p words the verb and its arguments. Never ends with 126 or 127, which pkexec says for itself.
    [[nodiscard]] ToolEnd carryOut(const QStringList &words) const;

private:
    [[nodiscard]] ToolEnd act(const QString &verb, const QStringList &arguments) const;

    KeepAwake m_keepAwake;
    FilePath m_dropCaches;
    DiskAdministrator m_disks;
    bool m_isRoot;
};

} // namespace Quillmere
