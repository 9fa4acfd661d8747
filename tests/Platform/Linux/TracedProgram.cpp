#include "Platform/Linux/TracedProgram.h"

#include <csignal>
#include <cstdlib>
#include <vector>

#include <fcntl.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Quillmere {

namespace {

[[noreturn]] void becomeProgram(const TemporaryHome &home, const QList<QByteArray> &arguments)
{
    const int nothing = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    ::dup2(nothing, STDOUT_FILENO);
    ::dup2(nothing, STDERR_FILENO);
    ::setenv("HOME", home.path("home").bytes().constData(), 1);
    ::setenv("XDG_DATA_HOME", home.path("home/.local/share").bytes().constData(), 1);
    ::setenv("ASAN_OPTIONS", "detect_leaks=0", 1); // It cannot look for leaks in a traced process.
    ::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
    ::raise(SIGSTOP);
    std::vector<char *> words = {const_cast<char *>(QUILLMERE_TRASH)};
    for (const QByteArray &argument : arguments)
        words.push_back(const_cast<char *>(argument.constData()));
    words.push_back(nullptr);
    ::execv(QUILLMERE_TRASH, words.data());
    ::_exit(127);
}

bool isEntryOf(pid_t process, long &number)
{
    __ptrace_syscall_info info = {};
    ::ptrace(PTRACE_GET_SYSCALL_INFO, process, sizeof info, &info);
    number = static_cast<long>(info.entry.nr);
    return info.op == PTRACE_SYSCALL_INFO_ENTRY;
}

Ending endingOf(int status)
{
    if (!WIFEXITED(status))
        return Ending::Killed;
    return WEXITSTATUS(status) == 0 ? Ending::Succeeded : Ending::Failed;
}

} // namespace

Ending runHeld(const TemporaryHome &home, const QList<QByteArray> &arguments, const GoesOn &goesOn)
{
    const pid_t process = ::fork();
    if (process == 0)
        becomeProgram(home, arguments);
    int status = 0;
    ::waitpid(process, &status, 0);
    ::ptrace(PTRACE_SETOPTIONS, process, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
    int signal = 0;
    for (int calls = 0;
         ::ptrace(PTRACE_SYSCALL, process, nullptr, signal) == 0 && ::waitpid(process, &status, 0) > 0;) {
        if (!WIFSTOPPED(status))
            break;
        const bool atCall = WSTOPSIG(status) == (SIGTRAP | 0x80);
        signal = atCall || WSTOPSIG(status) == SIGTRAP ? 0 : WSTOPSIG(status);
        long number = 0;
        // The loader and Qt's start know no openat2, with which all of our work begins.
        if (atCall && isEntryOf(process, number) && (calls > 0 || number == SYS_openat2) && !goesOn(++calls, number))
            ::kill(process, SIGKILL);
    }
    return endingOf(status);
}

} // namespace Quillmere
