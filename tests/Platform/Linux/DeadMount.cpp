#include "Platform/Linux/DeadMount.h"

#include "Platform/Linux/ChildProcess.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/mount.h>
#include <unistd.h>

namespace Quillmere {

DeadMount::DeadMount(const FilePath &folder)
    : m_folder(folder)
    , m_server(::open("/dev/fuse", O_RDWR | O_CLOEXEC))
{
    const QByteArray options = "fd=" + QByteArray::number(m_server.number()) + ",rootmode=40000,user_id=0,group_id=0";
    const bool isMounted
        = ::mount("gone:/share", folder.bytes().constData(), "fuse.gone", MS_NOSUID | MS_NODEV, options.constData())
        == 0;
    EXPECT_TRUE(isMounted) << folder.bytes().constData() << ": " << std::strerror(errno);
}

DeadMount::~DeadMount()
{
    ::umount2(m_folder.bytes().constData(), MNT_DETACH);
}

QByteArray whyNoDeadMount()
{
    if (const QByteArray reason = whyNoMountNamespace(); !reason.isEmpty())
        return reason;
    return ::access("/dev/fuse", R_OK | W_OK) == 0 ? QByteArray() : QByteArray("This machine has no /dev/fuse.");
}

} // namespace Quillmere
