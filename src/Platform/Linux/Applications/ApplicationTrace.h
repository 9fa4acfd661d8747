#pragma once

#include "Platform/Linux/Applications/ApplicationIndex.h"
#include "Platform/Linux/System/ProcessTable.h"

namespace Quillmere {

/// The application that a process shows itself to be, by its own traces and not by what it has inherited.
struct ApplicationTrace
{
    const DesktopEntry *entry = nullptr; ///< Of the index asked; none for a process that shows nothing.
    QByteArray unit; ///< The control group that told; empty where something else did.
    FilePath program; ///< What it executes; empty where that was not looked at.
    FilePath bundle; ///< The folder of an application in a sandbox, seen from outside; empty for others.

    /// Asks the traces of @p pid in turn, the most reliable first. The process may vanish meanwhile.
    [[nodiscard]] static ApplicationTrace of(pid_t pid, const ProcessTable &processes, const ApplicationIndex &index);
};

/// The program that a process executes, also when its file has been replaced since. Empty when it cannot be told.
[[nodiscard]] FilePath programOf(pid_t pid, const ProcessTable &processes);

/// The text that an interpreter runs: its first argument that is no option. Empty unless that is an absolute location.
[[nodiscard]] FilePath scriptOf(pid_t pid, const ProcessTable &processes);

} // namespace Quillmere
