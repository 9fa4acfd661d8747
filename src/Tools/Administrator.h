#pragma once

#include "Tools/BundleInstallation.h"
#include "Tools/Disks/DiskAdministrator.h"
#include "Tools/DriverInstallation.h"
#include "Tools/FilterPolicy.h"
#include "Tools/KeepAwake.h"
#include "Tools/NameCache.h"
#include "Tools/SearchIndex.h"
#include "Tools/ToolEnd.h"

#include <QLatin1String>
#include <QStringList>

namespace Quillmere {

/// What the administrator program acts on.
struct AdministratorMeans
{
    KeepAwake keepAwake;
    FilePath dropCaches;
    SearchIndex index;
    NameCache names;
    BundleInstallation bundles;
    DriverInstallation drivers;
    DiskAdministrator disks;
    FilterPolicy policy;

    [[nodiscard]] static AdministratorMeans ofThisMachine(const QString &programs, const Result<Caller> &caller);
};

/// The one program that acts with an administrator's rights. It believes nothing that it is told: whoever started it
/// may be anybody whom the system's password dialog let through.
class Administrator final
{
public:
    /// @p isRoot whether this process is root's, by its real and its effective user.
    Administrator(AdministratorMeans means, Result<Caller> caller, bool isRoot);

    /// Whether standard input matters to @p verb.
    [[nodiscard]] static bool readsInput(QLatin1String verb);
    /// @p words the verb and its arguments. Never ends with 126 or 127, which pkexec says for itself.
    [[nodiscard]] ToolEnd carryOut(const QStringList &words) const;

private:
    [[nodiscard]] ToolEnd act(const QString &verb, const QStringList &arguments) const;

    AdministratorMeans m_means;
    Result<Caller> m_caller;
    bool m_isRoot;
};

} // namespace Quillmere
