#pragma once

#include <QProcess>

namespace Quillmere {

/// Has @p process come into being by a plain fork. The usual way lets the child use our memory for a moment, after
/// which the thread sanitizer no longer sees our locks and finds races where there are none.
inline void forkPlainly(QProcess &process)
{
    process.setChildProcessModifier([] {});
}

/// Runs a program to its end. Its exit code, or less than 0 when it could not be started or did not exit.
inline int runProgram(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    forkPlainly(process);
    process.start(program, arguments);
    return process.waitForFinished(-1) && process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

} // namespace Quillmere
