#include "Tools/ApplicationDatabases.h"
#include "Tools/ProgramStart.h"

#include <QCoreApplication>

using namespace Quillmere;

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    return finish(runLsregister(QCoreApplication::arguments().sliced(1), ApplicationDatabases::ofUser()));
}
