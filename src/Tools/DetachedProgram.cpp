#include "Tools/DetachedProgram.h"

#include "Platform/Linux/Files/ErrnoFailure.h"
#include "Platform/Linux/Files/FileDescriptor.h"

#include <QDeadlineTimer>

#include <array>
#include <cerrno>
#include <optional>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Quillmere {

namespace {

constexpr int notDetached = 127;

/// In the child of a process that may have threads: system calls alone.
[[noreturn]] void becomeDetached(char *const *words, int output)
{
    if (::setsid() < 0 || ::chdir("/") != 0)
        ::_exit(notDetached);
    // A leader of a session could come by a terminal again; its child cannot, and belongs to init.
    const pid_t child = ::fork();
    if (child != 0)
        ::_exit(child < 0 ? notDetached : 0);
    const int nothing = ::open("/dev/null", O_RDWR);
    if (nothing >= 0 && ::dup2(output, STDOUT_FILENO) >= 0 && ::dup2(nothing, STDIN_FILENO) >= 0
        && ::dup2(nothing, STDERR_FILENO) >= 0)
        ::execv(words[0], words);
    ::_exit(notDetached);
}

Result<QByteArray> readToEnd(int output, const FilePath &program, std::chrono::milliseconds patience)
{
    const QDeadlineTimer deadline(patience);
    QByteArray text;
    std::array<char, 512> block{};
    for (;;) {
        pollfd waiting{output, POLLIN, 0};
        const int ready = ::poll(&waiting, 1, static_cast<int>(deadline.remainingTime()));
        if (ready < 0 && errno == EINTR)
            continue;
        if (ready <= 0)
            return Failure{Failure::Kind::Busy, program, u"It has said nothing in time."_qs};
        const ssize_t count = ::read(output, block.data(), block.size());
        if (count <= 0)
            return text;
        text.append(block.data(), count);
    }
}

} // namespace

Result<QByteArray> startDetached(const FilePath &program, const QList<QByteArray> &arguments,
                                 std::chrono::milliseconds patience)
{
    QList<QByteArray> owned = QList<QByteArray>{program.bytes()} + arguments;
    std::vector<char *> words;
    for (QByteArray &word : owned)
        words.push_back(word.data());
    words.push_back(nullptr);

    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        return failureFromErrno(errno, program);
    const FileDescriptor reading(ends[0]);
    auto writing = std::make_optional<FileDescriptor>(ends[1]);
    const pid_t child = ::fork();
    if (child < 0)
        return failureFromErrno(errno, program);
    if (child == 0)
        becomeDetached(words.data(), writing->number());
    // The end of the output is seen only once nobody but the program has this.
    writing.reset();
    while (::waitpid(child, nullptr, 0) < 0 && errno == EINTR) { }
    return readToEnd(reading.number(), program, patience);
}

} // namespace Quillmere
