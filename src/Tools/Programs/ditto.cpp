#include "Tools/Ditto.h"
#include "Tools/ProgramStart.h"

#include <QCoreApplication>

using namespace Quillmere;

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    return finish(runDitto(QCoreApplication::arguments().sliced(1)));
}
