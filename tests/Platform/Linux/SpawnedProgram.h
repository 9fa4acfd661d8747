#pragma once

#include <QByteArray>
#include <QStringList>

namespace Quillmere {

/// Runs a program, looked for in the PATH, to its end. Its exit code, or less than 0 when it could not be started or
/// did not exit. What it prints is added to @p output, or goes where ours goes.
///
/// Not by QProcess, whose child uses our memory for a moment: the thread sanitizer takes what happens there for our own
/// doing, no longer sees our locks, and finds races where there are none.
int runProgram(const QString &program, const QStringList &arguments, QByteArray *output = nullptr);

} // namespace Quillmere
