#pragma once

#include "Tools/ToolEnd.h"

namespace Quillmere {

/// Whether this process is root's in every respect; one that merely borrows root's rights is not.
[[nodiscard]] bool isRoot();

/// Leaves nothing of what the caller set for a program with root's rights: an environment made anew, no descriptors
/// but the standard ones, "/" as the folder. The address of the system bus stays, but not for a program that pkexec
/// has raised. Before anything else in main().
void startClean();

/// Has nothing come from standard input any more, and gives back what the caller has handed over as such.
void letGoOfInput();

/// The folder that the running program stands in, links resolved.
[[nodiscard]] QString programFolder();

/// Writes a line to standard output at once.
void say(const QString &line);

/// Writes the report to standard output and the message to standard error, and answers with the status, for main().
[[nodiscard]] int finish(const ToolEnd &end);

} // namespace Quillmere
