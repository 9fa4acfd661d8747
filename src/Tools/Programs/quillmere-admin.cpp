#include "Tools/Administrator.h"
#include "Tools/ProgramStart.h"

#include <QCoreApplication>

using namespace Quillmere;

int main(int argc, char *argv[])
{
    startClean();
    const QCoreApplication application(argc, argv);
    const Administrator administrator(AdministratorMeans::ofThisMachine(programFolder()), Caller::ofThisProcess(),
                                      isRoot());
    return finish(administrator.carryOut(QCoreApplication::arguments().sliced(1)));
}
