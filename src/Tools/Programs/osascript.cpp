#include "Platform/Linux/DiskService.h"
#include "Tools/Disks/DiskCatalogue.h"
#include "Tools/Disks/DiskRequests.h"
#include "Tools/Osascript.h"
#include "Tools/ProgramStart.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QFileInfo>

#include <tuple>

using namespace Quillmere;

namespace {

/// Where the polkit action names it; a program that was never installed has it beside itself.
QString administratorProgram()
{
    const QString installed = u"/usr/libexec/quillmere/quillmere-admin"_qs;
    return QFileInfo(installed).isExecutable() ? installed : programFolder() + u"/quillmere-admin"_qs;
}

/// A volume that was shown is shown again, under its new name.
void mountWhatWasErased(const AdministratorRequest &request)
{
    const auto volume = DiskIdentity::parse(request.arguments.mid(2));
    const DiskService service;
    const Result<DiskObjects> objects = request.verb == u"erase-volume" ? service.objects() : Failure{};
    const DiskBlock *block = volume && objects ? objects.value().block(volume->number) : nullptr;
    if (block)
        std::ignore = service.mount(block->object);
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
    settings.complete = [](const AdministratorRequest &request) {
        return withIdentity(request, ListedDisks::ofThisUser(), mountTable());
    };
    settings.carriedOut = mountWhatWasErased;
    return finish(runOsascript(QCoreApplication::arguments().sliced(1), settings));
}
