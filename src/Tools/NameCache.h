#pragma once

#include "Tools/ProgramFolders.h"
#include "Tools/ToolEnd.h"
#include "Tools/ToolStep.h"
#include "Values/FilePath.h"

#include <QDBusConnection>
#include <QStringList>

namespace Quillmere {

/// What this machine keeps of the names that it has looked up in the network.
class NameCache final
{
public:
    /// @p nscdSocket where the cache of the C library listens while it runs.
    NameCache(const QDBusConnection &systemBus, bool isRoot, ProgramFolders programs = ProgramFolders::ofSystem(),
              FilePath nscdSocket = FilePath("/run/nscd/socket"));

    /// Empties each cache that runs. That of the C library takes orders of root alone: beside another one it is left to
    /// restart() when this is not root's process, and alone it is a failure.
    [[nodiscard]] QList<ToolStep> flush() const;
    /// Lets the finder of names in the local network read its settings anew, where it runs. Needs root.
    [[nodiscard]] ToolStep reloadDiscovery() const;
    /// Both, told.
    [[nodiscard]] ToolEnd restart() const;
    [[nodiscard]] bool isRoot() const { return m_isRoot; }

private:
    [[nodiscard]] ToolStep flushResolved() const;
    [[nodiscard]] ToolStep flushNscd() const;

    QDBusConnection m_bus;
    bool m_isRoot;
    ProgramFolders m_programs;
    FilePath m_nscdSocket;
};

/// Carries out the command `dscacheutil`, of which there is `-flushcache`.
[[nodiscard]] ToolEnd runDscacheutil(const QStringList &arguments, const NameCache &cache);

/// Carries out the command `killall`, of which there is `-HUP mDNSResponder`: no process of that name is here, and what
/// stands for it is told.
[[nodiscard]] ToolEnd runKillall(const QStringList &arguments, const NameCache &cache);

} // namespace Quillmere
