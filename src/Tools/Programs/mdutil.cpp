#include "Tools/ProgramStart.h"
#include "Tools/SearchIndex.h"

#include <QCoreApplication>

using namespace Quillmere;

int main(int argc, char *argv[])
{
    startClean();
    const QCoreApplication application(argc, argv);
    return finish(runMdutil(QCoreApplication::arguments().sliced(1), SearchIndex(), Caller::ofThisProcess(), isRoot()));
}
