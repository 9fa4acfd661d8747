#include "Platform/Linux/Files/OpenAt.h"

#include <fcntl.h>
#include <sys/syscall.h>

namespace Quillmere {

FileDescriptor openAt(int folder, const QByteArray &name, int flags, quint64 resolve)
{
    open_how how = {};
    how.flags = static_cast<quint64>(flags | O_CLOEXEC);
    how.resolve = resolve;
    return FileDescriptor(static_cast<int>(::syscall(SYS_openat2, folder, name.constData(), &how, sizeof how)));
}

} // namespace Quillmere
