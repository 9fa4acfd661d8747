#include "Tools/Disks/Diskutil.h"
#include "Tools/ProgramStart.h"

#include <QCoreApplication>

using namespace Quillmere;

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments().sliced(1);
    // A whole screen waits for what is to be shown.
    const DiskService service = arguments.value(0) == u"info" ? DiskService::toShow() : DiskService();
    const Diskutil diskutil(
        service, BlockDevices(), ListedDisks::ofThisUser(), [] { return mountTable().valueOr({}); }, say);
    return finish(diskutil.run(arguments));
}
