#include "Tools/Osascript.h"
#include "Platform/Linux/Disks/DiskService.h"
#include "Tools/Disks/DiskCatalogue.h"
#include "Tools/Disks/DiskMounts.h"
#include "Tools/Disks/DiskRequests.h"
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

/// As a desktop mounts it, with the user's own rights.
Result<FilePath> mountAsUser(const std::optional<DiskIdentity> &volume)
{
    const DiskService service;
    const Result<DiskObjects> objects = service.objects();
    if (!objects)
        return objects.failure();
    const DiskBlock *block = volume ? objects.value().block(volume->number) : nullptr;
    return block ? service.mount(block->object) : Failure{Failure::Kind::NotFound, {}, u"The disk has gone."_qs};
}

/// Of an order to erase, the volume or the disk.
std::optional<DiskIdentity> erasedBy(const AdministratorRequest &request)
{
    if (request.verb == u"erase-volume")
        return DiskIdentity::parse(request.arguments.mid(2));
    return request.verb == u"secure-erase" ? DiskIdentity::parse(request.arguments) : std::nullopt;
}

/// A volume that was shown is shown again, under its new name.
void mountWhatWasErased(const AdministratorRequest &request)
{
    if (request.verb == u"erase-volume")
        std::ignore = mountAsUser(erasedBy(request));
}

/// A volume that was unmounted so that another driver should write to it is to be read again at least. Whoever did not
/// want it has it left as it is.
QString mountWhatIsOnlyRead(const AdministratorRequest &request, NotCarriedOut why, const QString &reason)
{
    if (request.verb != u"mount-ntfs")
        return {};
    const QString what = u"NTFS disk at "_qs + request.arguments.value(0);
    if (why == NotCarriedOut::Dismissed)
        return what + u" stays unmounted: "_qs + reason;
    const Result<FilePath> mounted = mountAsUser(DiskIdentity::parse(request.arguments.mid(1)));
    if (mounted || mounted.failure().kind == Failure::Kind::AlreadyExists)
        return what + u" is mounted as it was: "_qs + reason;
    return what + u" stays unmounted: "_qs + reason + u' ' + mounted.failure().detail;
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
    settings.runtimeFolder = RuntimeFolder::ofThisUser();
    DiskMounts before;
    settings.complete = [&before](const AdministratorRequest &request) {
        const Result<QList<MountEntry>> mounts = mountTable();
        const auto whole = mounts ? withIdentity(request, ListedDisks::ofThisUser(), mounts.value())
                                  : Result<AdministratorRequest>(mounts.failure());
        if (const auto disk = whole ? erasedBy(whole.value()) : std::nullopt)
            before = DiskMounts::of(disk->number, DiskService::toShow(), BlockDevices());
        return whole;
    };
    settings.carriedOut = mountWhatWasErased;
    settings.notCarriedOut = [&before](const AdministratorRequest &request, NotCarriedOut why, const QString &reason) {
        return why == NotCarriedOut::NotBegun ? before.restore(DiskService()).join(u'\n')
                                              : mountWhatIsOnlyRead(request, why, reason);
    };
    return finish(runOsascript(QCoreApplication::arguments().sliced(1), settings));
}
