#include "Tools/ChildProgram.h"

#include <QFile>
#include <QProcess>

namespace Quillmere {

Result<ChildEnd> runChild(const Command &command)
{
    constexpr int forever = -1;
    constexpr int signalled = 128;
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedOutputChannel);
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(command.launchPath, command.arguments);
    if (!process.waitForStarted(forever))
        return Failure{Failure::Kind::NotFound, FilePath(QFile::encodeName(command.launchPath)), process.errorString()};
    process.waitForFinished(forever);
    // Of a program that a signal ended, QProcess gives the signal's number as the code.
    const int end = process.exitStatus() == QProcess::CrashExit ? signalled : 0;
    return ChildEnd{end + process.exitCode(), process.readAllStandardError()};
}

} // namespace Quillmere
