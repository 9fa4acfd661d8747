#include "Tools/Administrator.h"
#include "Tools/ProgramStart.h"

#include <QCoreApplication>

#include <csignal>

using namespace Quillmere;

int main(int argc, char *argv[])
{
    startClean();
    // It may be the turn to raise the password dialog, which is over. What is done now may take hours.
    if (!Administrator::readsInput(QLatin1String(argc > 1 ? argv[1] : "")))
        letGoOfInput();
    const QCoreApplication application(argc, argv);
    // Whoever reads what is said may go. What was begun is brought to its end.
    std::signal(SIGPIPE, SIG_IGN);
    const Result<Caller> caller = Caller::ofThisProcess();
    const Administrator administrator(AdministratorMeans::ofThisMachine(programFolder(), caller), caller, isRoot());
    return finish(administrator.carryOut(QCoreApplication::arguments().sliced(1)));
}
