#pragma once

#include "Platform/Linux/Files/FileDescriptor.h"

#include <QtGlobal>

#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/resource.h>

namespace Quillmere {

/// As long as it is there, this process opens nothing. Inside inChild() alone, since it may never open many again.
class NoDescriptorsLeft
{
public:
    NoDescriptorsLeft()
    {
        constexpr rlimit few = {64, 64};
        ::setrlimit(RLIMIT_NOFILE, &few);
        for (;;) {
            FileDescriptor taken(::open("/dev/null", O_RDONLY | O_CLOEXEC));
            if (!taken.isOpen())
                return;
            m_taken.push_back(std::move(taken));
        }
    }
    Q_DISABLE_COPY_MOVE(NoDescriptorsLeft)

private:
    std::vector<FileDescriptor> m_taken;
};

} // namespace Quillmere
