#pragma once

#include "Platform/Linux/Programs/StartedProgram.h"

namespace Quillmere {

/// Runs programs as children. The system's commands that mean something else here, or nothing, are our own programs of
/// the same names; every other path is what it says.
/// Programs get their arguments as UTF-8. Text cannot hold a name that is not UTF-8, so none is ever passed, and half a
/// surrogate pair arrives as a question mark. An argument with U+0000 in it is a failure: it would arrive cut short.
class LinuxProcessRunner final : public ProcessRunner
{
public:
    /// @p helpers is the folder of our own programs. What is started has @p environment, whatever becomes of this
    /// process's own.
    explicit LinuxProcessRunner(FilePath helpers, QList<QByteArray> environment = currentEnvironment());

    /// Waits for everyone who holds the output, a child that the program has left behind as well.
    [[nodiscard]] Result<ProcessOutcome> run(const Command &command) const override;
    [[nodiscard]] Result<ProcessOutcome> runJoined(const Command &command) const override;
    /// What a process that was left behind goes on writing is not waited for.
    [[nodiscard]] Result<std::optional<ProcessOutcome>> runWithin(std::chrono::milliseconds patience,
                                                                  const Command &command) const override;
    /// The program goes on when this one ends. Its outputs are ours.
    [[nodiscard]] Result<void> launch(const Command &command) const override;
    [[nodiscard]] Result<std::future<int>> start(const Command &command) const override;
    /// What fails says what the script wrote to its standard error.
    [[nodiscard]] Result<void> executeScript(const QString &source) const override;

private:
    [[nodiscard]] FilePath programOf(const QString &launchPath) const;

    FilePath m_helpers;
    QList<QByteArray> m_environment;
};

} // namespace Quillmere
