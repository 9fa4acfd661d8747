#include "Tools/NameCache.h"
#include "Tools/ProgramStart.h"

#include <QCoreApplication>

using namespace Quillmere;

int main(int argc, char *argv[])
{
    startClean();
    const QCoreApplication application(argc, argv);
    return finish(
        runKillall(QCoreApplication::arguments().sliced(1), NameCache(QDBusConnection::systemBus(), isRoot())));
}
