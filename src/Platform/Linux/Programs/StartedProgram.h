#pragma once

#include "Platform/Linux/Files/FileDescriptor.h"
#include "Platform/ProcessRunner.h"

#include <chrono>
#include <optional>

#include <sys/types.h>

namespace Quillmere {

/// The variables of this process, each as "name=value". Only while no other thread changes any.
[[nodiscard]] QList<QByteArray> currentEnvironment();

/// Which of the program's outputs come back to us. A program of which nothing does has a session of its own, and one of
/// which both do has a process group of its own.
enum class Capture { Nothing, StandardOutput, StandardError, BothOutputs };

/// A program that has been started and is to be waited for, once, by one of the three ways.
/// It reads nothing, has the environment that it is given and of our open files none but the outputs that are not
/// captured, and is told of signals as a program expects: none is blocked or ignored.
class StartedProgram
{
public:
    /// Fails when the program cannot be executed, and for an argument that holds U+0000, which none can be handed.
    [[nodiscard]] static Result<StartedProgram> start(const FilePath &program, const QStringList &arguments,
                                                      Capture capture, const QList<QByteArray> &environment);

    /// Reads until nobody holds the captured output any more, then waits for the end.
    [[nodiscard]] ProcessOutcome finishWithOutput();
    /// The same, of which only the end is kept, as LastOutput does.
    [[nodiscard]] ProcessOutcome finishWithLastOutput();
    /// Waits for the end of this process alone, whatever it has started; the output is what has come until then.
    [[nodiscard]] ProcessOutcome finish();
    /// Only for Capture::BothOutputs. Waits for the end of this process alone and then takes what has come, which is
    /// at most what a pipe holds. Nothing once @p patience has passed: then the whole group has been ended.
    [[nodiscard]] std::optional<ProcessOutcome> finishWithin(std::chrono::milliseconds patience);

    [[nodiscard]] pid_t processIdentifier() const { return m_pid; }

private:
    [[nodiscard]] QByteArray whatHasCome() const;
    void endGroup(const FileDescriptor &process) const;
    /// Whether it ends within @p patience. @p process is its descriptor, where the kernel gives one.
    [[nodiscard]] bool endsWithin(std::chrono::milliseconds patience, const FileDescriptor &process) const;
    [[nodiscard]] bool hasEnded() const;

    pid_t m_pid = -1;
    FileDescriptor m_output;
};

/// Waits for the end of a child of ours. 128 plus the signal where one ended it.
[[nodiscard]] int exitStatusOf(pid_t child);

} // namespace Quillmere
