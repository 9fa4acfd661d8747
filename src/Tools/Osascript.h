#pragma once

#include "Tools/ToolEnd.h"

#include <QStringList>

#include <optional>

namespace Quillmere {

/// How rights are come by on this machine.
struct ElevationSettings
{
    QString pkexec = u"/usr/bin/pkexec"_qs;
    QString administrator; ///< The program that carries out requests. Absolute.
    bool isRoot = false; ///< Nobody is asked then.
    /// pkexec asks on the machine's own system bus, whatever the environment says. False where we would be on another.
    bool mayAskUser = true;
};

/// Carries out the command `osascript` with @p arguments: of scripts it knows only those that run one of the known
/// commands with administrator privileges. Starts nothing for any other, and never a shell.
[[nodiscard]] ToolEnd runOsascript(const QStringList &arguments, const ElevationSettings &settings);

} // namespace Quillmere
