#include "Tools/ProgramStart.h"
#include "Tools/SleepSetting.h"

#include <QCoreApplication>

using namespace Quillmere;

int main(int argc, char *argv[])
{
    startClean();
    const QCoreApplication application(argc, argv);
    const KeepAwake keepAwake = KeepAwake::ofThisMachine(programFolder());
    return finish(runPmset(QCoreApplication::arguments().sliced(1), keepAwake, isRoot()));
}
