#include "Platform/Linux/Removal/TracedProgram.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <optional>
#include <vector>

#include <fcntl.h>
#include <sys/ptrace.h>
#include <sys/stat.h>
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

Ending endingOf(int status)
{
    if (!WIFEXITED(status))
        return Ending::Killed;
    return WEXITSTATUS(status) == 0 ? Ending::Succeeded : Ending::Failed;
}

/// Asked at the beginning and at the end of each system call. Answering false kills the program.
using AtCall = std::function<bool(pid_t process, const __ptrace_syscall_info &call)>;

Ending runTraced(const TemporaryHome &home, const QList<QByteArray> &arguments, const AtCall &goesOn)
{
    const pid_t process = ::fork();
    if (process == 0)
        becomeProgram(home, arguments);
    int status = 0;
    ::waitpid(process, &status, 0);
    ::ptrace(PTRACE_SETOPTIONS, process, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
    int signal = 0;
    while (::ptrace(PTRACE_SYSCALL, process, nullptr, signal) == 0 && ::waitpid(process, &status, 0) > 0) {
        if (!WIFSTOPPED(status))
            break;
        const bool atCall = WSTOPSIG(status) == (SIGTRAP | 0x80);
        signal = atCall || WSTOPSIG(status) == SIGTRAP ? 0 : WSTOPSIG(status);
        __ptrace_syscall_info call = {};
        if (atCall && ::ptrace(PTRACE_GET_SYSCALL_INFO, process, sizeof call, &call) > 0 && !goesOn(process, call))
            ::kill(process, SIGKILL);
    }
    return endingOf(status);
}

std::optional<dev_t> volumeOf(pid_t process, quint64 descriptor)
{
    const QByteArray place = "/proc/" + QByteArray::number(process) + "/fd/" + QByteArray::number(descriptor);
    struct stat status = {};
    return ::stat(place.constData(), &status) == 0 ? std::optional(status.st_dev) : std::nullopt;
}

} // namespace

Ending runHeld(const TemporaryHome &home, const QList<QByteArray> &arguments, const GoesOn &goesOn)
{
    int calls = 0;
    return runTraced(home, arguments, [&](pid_t, const __ptrace_syscall_info &call) {
        if (call.op != PTRACE_SYSCALL_INFO_ENTRY)
            return true;
        const long number = static_cast<long>(call.entry.nr);
        // The loader and Qt's start know no openat2, with which all of our work begins.
        return (calls == 0 && number != SYS_openat2) || goesOn(++calls, number);
    });
}

QList<dev_t> volumesSynchronized(const TemporaryHome &home, const QList<QByteArray> &paths)
{
    QList<dev_t> volumes;
    std::optional<dev_t> asked;
    const Ending ending = runTraced(home, QList<QByteArray>{"sync"} + paths, [&](pid_t process, const auto &call) {
        if (call.op == PTRACE_SYSCALL_INFO_ENTRY)
            asked = call.entry.nr == SYS_syncfs ? volumeOf(process, call.entry.args[0]) : std::nullopt;
        else if (call.op == PTRACE_SYSCALL_INFO_EXIT && asked && call.exit.rval == 0)
            volumes.append(*asked);
        return true;
    });
    EXPECT_EQ(ending, Ending::Succeeded);
    return volumes;
}

} // namespace Quillmere
