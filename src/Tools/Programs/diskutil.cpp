#include "Tools/Disks/Diskutil.h"
#include "Tools/Disks/DiskAdministrator.h"
#include "Tools/Disks/DiskRequests.h"
#include "Tools/ProgramStart.h"

#include <QCoreApplication>

using namespace Quillmere;

namespace {

/// Erasing needs root, which comes to it by other ways than this program.
ToolEnd erase(const AdministratorRequest &request, const DiskTools &tools)
{
    if (!isRoot())
        return {ToolEnd::needsRoot, u"diskutil: Only root may erase disks."_qs};
    const Result<AdministratorRequest> whole = withIdentity(request, ListedDisks::ofThisUser(), mountTable());
    if (!whole)
        return {1, u"diskutil: "_qs + whole.failure().detail};
    return DiskAdministrator(tools).carryOut(whole.value().verb, whole.value().arguments).value_or(ToolEnd{1, {}});
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments().sliced(1);
    const DiskTools tools = DiskTools::ofThisMachine();
    if (const auto request = diskRequestFor({QStringList{u"/usr/sbin/diskutil"_qs} + arguments}))
        return finish(erase(*request, tools));
    const Diskutil diskutil(tools.service, tools.devices, ListedDisks::ofThisUser(), mountTable, tools.say);
    return finish(diskutil.run(arguments));
}
