#include "Tools/Disks/VolumeOwner.h"

#include "Platform/Linux/ErrnoFailure.h"
#include "Platform/Linux/FileDescriptor.h"

#include <cerrno>

#include <fcntl.h>
#include <pwd.h>
#include <sys/mount.h>
#include <unistd.h>

namespace Quillmere {

std::optional<VolumeOwner> VolumeOwner::whoAskedForRights()
{
    bool isNumber = false;
    const uid_t user = qgetenv("PKEXEC_UID").toUInt(&isNumber);
    const passwd *entry = isNumber ? ::getpwuid(user) : nullptr;
    return entry ? std::optional(VolumeOwner{entry->pw_uid, entry->pw_gid}) : std::nullopt;
}

Result<void> VolumeOwner::take(const QByteArray &node, const QString &type) const
{
    if (type != u"ext4")
        return {};
    const FilePath path = FilePath("/dev").appending(QByteArray(node).replace('!', '/'));
    // Mounted nowhere, so that nobody else sees it, and gone as soon as it is closed.
    const FileDescriptor fileSystem(::fsopen("ext4", FSOPEN_CLOEXEC));
    if (!fileSystem.isOpen()
        || ::fsconfig(fileSystem.number(), FSCONFIG_SET_STRING, "source", path.bytes().constData(), 0) != 0
        || ::fsconfig(fileSystem.number(), FSCONFIG_CMD_CREATE, nullptr, nullptr, 0) != 0)
        return failureFromErrno(errno, path);
    const FileDescriptor top(::fsmount(fileSystem.number(), FSMOUNT_CLOEXEC, MOUNT_ATTR_NOSUID | MOUNT_ATTR_NODEV));
    if (!top.isOpen() || ::fchownat(top.number(), "", user, group, AT_EMPTY_PATH) != 0)
        return failureFromErrno(errno, path);
    return {};
}

} // namespace Quillmere
