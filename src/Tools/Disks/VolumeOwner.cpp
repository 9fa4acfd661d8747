#include "Tools/Disks/VolumeOwner.h"

#include "Platform/Linux/Disks/BlockDevices.h"
#include "Platform/Linux/Files/ErrnoFailure.h"
#include "Platform/Linux/Files/FileDescriptor.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/mount.h>
#include <unistd.h>

namespace Quillmere {

Result<void> giveVolume(const Caller &owner, const QByteArray &node, const QString &type)
{
    if (type != u"ext4")
        return {};
    const FilePath path = nodeOf(node);
    // Mounted nowhere, so that nobody else sees it, and gone as soon as it is closed.
    const FileDescriptor fileSystem(::fsopen("ext4", FSOPEN_CLOEXEC));
    if (!fileSystem.isOpen()
        || ::fsconfig(fileSystem.number(), FSCONFIG_SET_STRING, "source", path.bytes().constData(), 0) != 0
        || ::fsconfig(fileSystem.number(), FSCONFIG_CMD_CREATE, nullptr, nullptr, 0) != 0)
        return failureFromErrno(errno, path);
    const FileDescriptor top(::fsmount(fileSystem.number(), FSMOUNT_CLOEXEC, MOUNT_ATTR_NOSUID | MOUNT_ATTR_NODEV));
    if (!top.isOpen() || ::fchownat(top.number(), "", owner.user, owner.group, AT_EMPTY_PATH) != 0)
        return failureFromErrno(errno, path);
    return {};
}

} // namespace Quillmere
