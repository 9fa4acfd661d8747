#include "Platform/Linux/Programs/StartedProgram.h"

#include "Platform/Linux/Files/ErrnoFailure.h"
#include "Platform/Linux/Programs/LastOutput.h"

#include <QDeadlineTimer>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>

namespace Quillmere {

namespace {

constexpr size_t blockSize = 64 * 1024;
constexpr int signalBase = 128;
// pipe(7): the capacity of a pipe is 16 pages.
constexpr qsizetype pipeCapacity = 64 * 1024;
constexpr std::chrono::milliseconds graceToEnd{500};
// Kernels before 5.3, and some sandboxes, give no descriptor of a process, which then is looked after this often.
constexpr std::chrono::milliseconds stepWithoutDescriptor{20};

/// What posix_spawn(3) is to do in the new process.
class Preparation
{
public:
    Preparation()
    {
        ::posix_spawn_file_actions_init(&m_files);
        ::posix_spawnattr_init(&m_attributes);
        sigset_t none;
        sigset_t every;
        ::sigemptyset(&none);
        ::sigfillset(&every);
        ::posix_spawnattr_setsigmask(&m_attributes, &none);
        ::posix_spawnattr_setsigdefault(&m_attributes, &every);
    }
    ~Preparation()
    {
        ::posix_spawn_file_actions_destroy(&m_files);
        ::posix_spawnattr_destroy(&m_attributes);
    }
    Q_DISABLE_COPY_MOVE(Preparation)

    void send(int output, int pipe) { ::posix_spawn_file_actions_adddup2(&m_files, pipe, output); }
    void discard(int output) { ::posix_spawn_file_actions_addopen(&m_files, output, "/dev/null", O_WRONLY, 0); }

    /// Gives the process a session of its own, so that the end of ours, or of our terminal, is not its end.
    void detach() { m_flags |= POSIX_SPAWN_SETSID; }

    /// Gives the process a group of its own, so that it can be ended together with what it has started.
    void lead()
    {
        ::posix_spawnattr_setpgroup(&m_attributes, 0);
        m_flags |= POSIX_SPAWN_SETPGROUP;
    }

    /// 0 or an error number, that of execve(2) included.
    [[nodiscard]] int start(const FilePath &program, std::vector<char *> &arguments, std::vector<char *> &environment,
                            pid_t &pid)
    {
        // Only now: where our own standard input is closed, a pipe may have come to its number.
        ::posix_spawn_file_actions_addopen(&m_files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        ::posix_spawnattr_setflags(&m_attributes, m_flags);
        // Libraries open files too, and not all of them so that they close by themselves.
        ::posix_spawn_file_actions_addclosefrom_np(&m_files, STDERR_FILENO + 1);
        return ::posix_spawn(&pid, program.bytes().constData(), &m_files, &m_attributes, arguments.data(),
                             environment.data());
    }

private:
    posix_spawn_file_actions_t m_files = {};
    posix_spawnattr_t m_attributes = {};
    short m_flags = POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF;
};

/// Takes what has come. False when no more will.
bool readBlock(int pipe, QByteArray &output)
{
    std::array<char, blockSize> block;
    const ssize_t got = ::read(pipe, block.data(), block.size());
    if (got > 0)
        output.append(block.data(), got);
    return got > 0 || (got < 0 && errno == EINTR);
}

/// A list as execve(2) wants it, of texts that outlive it.
std::vector<char *> pointersTo(QList<QByteArray> &texts)
{
    std::vector<char *> pointers;
    for (QByteArray &text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

} // namespace

QList<QByteArray> currentEnvironment()
{
    QList<QByteArray> variables;
    for (char **variable = environ; variable && *variable; ++variable)
        variables.append(*variable);
    return variables;
}

int exitStatusOf(pid_t child)
{
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) { }
    return WIFSIGNALED(status) ? signalBase + WTERMSIG(status) : WEXITSTATUS(status);
}

Result<StartedProgram> StartedProgram::start(const FilePath &program, const QStringList &arguments, Capture capture,
                                             const QList<QByteArray> &environment)
{
    QList<QByteArray> texts = {program.bytes()};
    for (const QString &argument : arguments)
        texts.append(argument.toUtf8());
    if (std::ranges::any_of(texts, [](const QByteArray &text) { return text.contains('\0'); }))
        return Failure{Failure::Kind::Malformed, program, u"An argument holds U+0000"_qs};
    QList<QByteArray> variables = environment;
    std::vector<char *> words = pointersTo(texts);
    std::vector<char *> settings = pointersTo(variables);

    Preparation preparation;
    std::array<int, 2> ends = {-1, -1};
    if (capture != Capture::Nothing && ::pipe2(ends.data(), O_CLOEXEC) != 0)
        return failureFromErrno(errno, program);
    StartedProgram started;
    started.m_output = FileDescriptor(ends[0]);
    const FileDescriptor writingEnd(ends[1]);
    if (capture == Capture::Nothing)
        preparation.detach();
    if (capture == Capture::StandardOutput)
        preparation.send(STDOUT_FILENO, writingEnd.number());
    if (capture == Capture::StandardError) {
        preparation.send(STDERR_FILENO, writingEnd.number());
        preparation.discard(STDOUT_FILENO);
    }
    if (capture == Capture::BothOutputs) {
        preparation.lead();
        preparation.send(STDOUT_FILENO, writingEnd.number());
        preparation.send(STDERR_FILENO, writingEnd.number());
    }
    const int error = preparation.start(program, words, settings, started.m_pid);
    if (error != 0)
        return failureFromErrno(error, program);
    return started;
}

ProcessOutcome StartedProgram::finishWithOutput()
{
    ProcessOutcome outcome;
    while (readBlock(m_output.number(), outcome.standardOutput)) { }
    outcome.exitStatus = exitStatusOf(m_pid);
    return outcome;
}

ProcessOutcome StartedProgram::finishWithLastOutput()
{
    LastOutput output;
    QByteArray block;
    while (readBlock(m_output.number(), block)) {
        output.append(block);
        block.clear();
    }
    return {exitStatusOf(m_pid), output.text()};
}

ProcessOutcome StartedProgram::finish()
{
    ProcessOutcome outcome;
    const FileDescriptor process(static_cast<int>(::syscall(SYS_pidfd_open, m_pid, 0)));
    std::array<pollfd, 2> events = {{{m_output.number(), POLLIN, 0}, {process.number(), POLLIN, 0}}};
    bool isOpen = true;
    const int patience = process.isOpen() ? -1 : int(stepWithoutDescriptor.count());
    while (isOpen && events[1].revents == 0) {
        const int ready = ::poll(events.data(), events.size(), patience);
        if (ready == 0 && hasEnded())
            break;
        if (ready <= 0)
            continue;
        if (events[0].revents != 0)
            isOpen = readBlock(m_output.number(), outcome.standardOutput);
    }
    // Of what it wrote last, some may still lie in the pipe; a child of its own may keep that open for ever.
    while (isOpen && ::poll(events.data(), 1, 0) > 0)
        isOpen = readBlock(m_output.number(), outcome.standardOutput);
    outcome.exitStatus = exitStatusOf(m_pid);
    return outcome;
}

std::optional<ProcessOutcome> StartedProgram::finishWithin(std::chrono::milliseconds patience)
{
    const FileDescriptor process(static_cast<int>(::syscall(SYS_pidfd_open, m_pid, 0)));
    if (!endsWithin(patience, process)) {
        endGroup(process);
        return std::nullopt;
    }
    ProcessOutcome outcome;
    outcome.exitStatus = exitStatusOf(m_pid);
    outcome.standardOutput = whatHasCome();
    return outcome;
}

bool StartedProgram::hasEnded() const
{
    siginfo_t end = {};
    return ::waitid(P_PID, static_cast<id_t>(m_pid), &end, WEXITED | WNOHANG | WNOWAIT) == 0 && end.si_pid == m_pid;
}

bool StartedProgram::endsWithin(std::chrono::milliseconds patience, const FileDescriptor &process) const
{
    const QDeadlineTimer deadline(patience);
    pollfd end = {process.number(), POLLIN, 0};
    do {
        const auto left = static_cast<int>(deadline.remainingTime());
        const int step = process.isOpen() ? left : std::min(left, int(stepWithoutDescriptor.count()));
        if (::poll(&end, 1, step) > 0 || (!process.isOpen() && hasEnded()))
            return true;
    } while (!deadline.hasExpired());
    return false;
}

QByteArray StartedProgram::whatHasCome() const
{
    // One that was left behind may hold the pipe open for ever, and write to it for ever.
    QByteArray output;
    pollfd event = {m_output.number(), POLLIN, 0};
    while (output.size() < pipeCapacity && ::poll(&event, 1, 0) > 0 && readBlock(m_output.number(), output)) { }
    return output.first(std::min(output.size(), pipeCapacity));
}

void StartedProgram::endGroup(const FileDescriptor &process) const
{
    // Until it is waited for, a dead process keeps its number, and with it that of the group.
    ::kill(-m_pid, SIGTERM);
    std::ignore = endsWithin(graceToEnd, process);
    ::kill(-m_pid, SIGKILL);
    if (endsWithin(graceToEnd, process))
        std::ignore = exitStatusOf(m_pid);
    else // Asleep in the kernel, where no signal reaches it until the disk or the network answers.
        std::thread([pid = m_pid] { std::ignore = exitStatusOf(pid); }).detach();
}

} // namespace Quillmere
