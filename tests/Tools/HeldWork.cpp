#include "Tools/HeldWork.h"

#include <csignal>

#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Quillmere {

namespace {

[[noreturn]] void workHeld(const std::function<bool()> &work)
{
    ::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
    ::raise(SIGSTOP);
    ::_exit(work() ? 0 : 1);
}

} // namespace

WorkEnding doAndKillAt(int call, const std::function<bool()> &work)
{
    const pid_t process = ::fork();
    if (process == 0)
        workHeld(work);
    int status = 0;
    ::waitpid(process, &status, 0);
    ::ptrace(PTRACE_SETOPTIONS, process, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
    int reached = 0;
    while (::ptrace(PTRACE_SYSCALL, process, nullptr, 0) == 0 && ::waitpid(process, &status, 0) > 0) {
        if (!WIFSTOPPED(status))
            break;
        __ptrace_syscall_info information = {};
        const bool atCall = WSTOPSIG(status) == (SIGTRAP | 0x80)
            && ::ptrace(PTRACE_GET_SYSCALL_INFO, process, sizeof information, &information) > 0
            && information.op == PTRACE_SYSCALL_INFO_ENTRY;
        if (atCall && ++reached == call)
            ::kill(process, SIGKILL);
    }
    if (!WIFEXITED(status))
        return WorkEnding::Killed;
    return WEXITSTATUS(status) == 0 ? WorkEnding::Done : WorkEnding::Failed;
}

} // namespace Quillmere
