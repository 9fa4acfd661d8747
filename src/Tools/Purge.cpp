#include "Tools/Purge.h"

#include "Platform/Linux/Files/ErrnoFailure.h"
#include "Platform/Linux/Files/FileDescriptor.h"

#include <QStringList>

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace Quillmere {

FilePath dropCachesFile()
{
    return FilePath("/proc/sys/vm/drop_caches");
}

Result<void> purgeCaches(const FilePath &dropCaches)
{
    const FileDescriptor file(::open(dropCaches.bytes().constData(), O_WRONLY | O_CLOEXEC | O_NOFOLLOW));
    if (!file.isOpen())
        return failureFromErrno(errno, dropCaches);
    // Dropped are only pages that are on the disk already.
    ::sync();
    // Documentation/admin-guide/sysctl/vm.rst: 1 the pages, 2 the names and inodes, 3 both.
    if (::write(file.number(), "3", 1) != 1)
        return failureFromErrno(errno, dropCaches);
    return {};
}

ToolEnd runPurge(const QStringList &arguments, const FilePath &dropCaches)
{
    if (!arguments.isEmpty())
        return {ToolEnd::wrongUse, u"usage: purge"_qs};
    const Result<void> purged = purgeCaches(dropCaches);
    if (purged)
        return {};
    if (purged.failure().kind == Failure::Kind::NoPermission)
        return {ToolEnd::needsRoot, u"purge: Only root may drop the caches of this machine."_qs};
    return {1, u"purge: %1: %2"_qs.arg(dropCaches.displayText(), purged.failure().detail)};
}

} // namespace Quillmere
