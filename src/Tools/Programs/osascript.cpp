#include "Tools/Osascript.h"
#include "Tools/ProgramStart.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QFileInfo>

using namespace Quillmere;

namespace {

/// Where the polkit action names it; a program that was never installed has it beside itself.
QString administratorProgram()
{
    const QString installed = u"/usr/libexec/quillmere/quillmere-admin"_qs;
    return QFileInfo(installed).isExecutable() ? installed : programFolder() + u"/quillmere-admin"_qs;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    // pkexec refuses everything with a shell that /etc/shells does not name, and none is ever started here.
    qunsetenv("SHELL");
    ElevationSettings settings;
    settings.administrator = administratorProgram();
    settings.isRoot = isRoot();
    settings.mayAskUser = settings.isRoot || QDBusConnection::systemBus().isConnected();
    return finish(runOsascript(QCoreApplication::arguments().sliced(1), settings));
}
