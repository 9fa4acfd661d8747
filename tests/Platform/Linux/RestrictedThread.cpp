#include "Platform/Linux/RestrictedThread.h"

#include <QtGlobal>

#include <cerrno>
#include <cstddef>

#include <linux/capability.h>
#include <linux/close_range.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <thread>

bool withPrivateMounts(const std::function<void()> &action)
{
    bool isPermitted = false;
    std::thread([&] {
        isPermitted = ::unshare(CLONE_NEWNS) == 0 && ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
        if (isPermitted)
            action();
    }).join();
    return isPermitted;
}

void withoutOverridingModes(const std::function<void()> &action)
{
    std::thread([&] {
        // The call itself, because it concerns the calling thread alone.
        __user_cap_header_struct header = {_LINUX_CAPABILITY_VERSION_3, 0};
        __user_cap_data_struct data[_LINUX_CAPABILITY_U32S_3] = {};
        if (::syscall(SYS_capget, &header, data) != 0)
            qFatal("capget");
        data[0].effective &= ~(1U << CAP_DAC_OVERRIDE) & ~(1U << CAP_DAC_READ_SEARCH);
        if (::syscall(SYS_capset, &header, data) != 0)
            qFatal("capset");
        action();
    }).join();
}

namespace {

template<size_t Count>
bool withFilter(sock_filter (&steps)[Count], const std::function<void()> &action)
{
    bool isPermitted = false;
    std::thread([&] {
        const sock_fprog program = {Count, steps};
        isPermitted = ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0
            && ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
        if (isPermitted)
            action();
    }).join();
    return isPermitted;
}

} // namespace

bool withoutOwnDescriptors(const std::function<void()> &action)
{
    sock_filter steps[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_close_range, 0, 3),
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, args) + 2 * sizeof(__u64)),
        BPF_JUMP(BPF_JMP | BPF_JSET | BPF_K, CLOSE_RANGE_UNSHARE, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | ENOMEM),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    return withFilter(steps, action);
}

bool withoutProcessDescriptors(const std::function<void()> &action)
{
    sock_filter steps[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_pidfd_open, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | ENOSYS),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    return withFilter(steps, action);
}
