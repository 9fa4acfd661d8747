#pragma once

#include "Platform/Linux/Files/FileDescriptor.h"
#include "Platform/ProcessRunner.h"
#include "Tools/Caller.h"
#include "Values/Result.h"

#include <QByteArray>

namespace Quillmere {

/// How a program that was started has ended.
struct ChildEnd
{
    int status = 0; ///< 128 plus the signal where one ended it.
    QByteArray said; ///< Of much only the end, as LastOutput keeps it.
};

/// @p path as a program is handed it.
[[nodiscard]] QString argumentOf(const FilePath &path);

/// Starts a program and waits for its end, however late. It reads nothing, writes its output where ours goes, and says
/// what it writes to standard error. Fails when it cannot be started.
/// An open @p input is its standard input instead, and from its start on no longer open here.
[[nodiscard]] Result<ChildEnd> runChild(const Command &command, FileDescriptor input = {});

/// The same with the rights of @p caller and nothing of ours: in a session of its own, in an environment made anew that
/// leads to the caller's home and, where there is one, to the caller's session bus. What it writes, to either output,
/// goes into a file that takes no more after its end: a service that it leaves behind would hold an output of ours
/// open, so that whoever reads that to its end would never get there, and would be ended by a pipe that nobody reads.
[[nodiscard]] Result<ChildEnd> runChildAs(const Caller &caller, const Command &command);

} // namespace Quillmere
