#include "Platform/Linux/Programs/LinuxProcessRunner.h"

#include "Platform/Linux/Programs/HelperPrograms.h"

#include <thread>

namespace Quillmere {

LinuxProcessRunner::LinuxProcessRunner(FilePath helpers, QList<QByteArray> environment)
    : m_helpers(std::move(helpers))
    , m_environment(std::move(environment))
{
}

FilePath LinuxProcessRunner::programOf(const QString &launchPath) const
{
    const QByteArray helper = helperProgramFor(launchPath);
    return helper.isEmpty() ? FilePath(launchPath.toUtf8()) : m_helpers.appending(helper);
}

Result<ProcessOutcome> LinuxProcessRunner::run(const Command &command) const
{
    Result<StartedProgram> program = StartedProgram::start(programOf(command.launchPath), command.arguments,
                                                           Capture::StandardOutput, m_environment);
    if (!program)
        return program.failure();
    return program.value().finishWithOutput();
}

Result<ProcessOutcome> LinuxProcessRunner::runJoined(const Command &command) const
{
    Result<StartedProgram> program
        = StartedProgram::start(programOf(command.launchPath), command.arguments, Capture::BothOutputs, m_environment);
    if (!program)
        return program.failure();
    return program.value().finishWithLastOutput();
}

Result<std::optional<ProcessOutcome>> LinuxProcessRunner::runWithin(std::chrono::milliseconds patience,
                                                                    const Command &command) const
{
    Result<StartedProgram> program
        = StartedProgram::start(programOf(command.launchPath), command.arguments, Capture::BothOutputs, m_environment);
    if (!program)
        return program.failure();
    return program.value().finishWithin(patience);
}

Result<void> LinuxProcessRunner::launch(const Command &command) const
{
    const Result<std::future<int>> end = start(command);
    return end ? Result<void>() : Result<void>(end.failure());
}

Result<std::future<int>> LinuxProcessRunner::start(const Command &command) const
{
    const Result<StartedProgram> program
        = StartedProgram::start(programOf(command.launchPath), command.arguments, Capture::Nothing, m_environment);
    if (!program)
        return program.failure();
    std::packaged_task<int()> waiting([pid = program.value().processIdentifier()] { return exitStatusOf(pid); });
    std::future<int> end = waiting.get_future();
    // Even where nobody asks how it ended: a child that is not waited for stays in the list of processes as a dead one.
    std::thread(std::move(waiting)).detach();
    return end;
}

Result<void> LinuxProcessRunner::executeScript(const QString &source) const
{
    const FilePath program = m_helpers.appending("osascript");
    Result<StartedProgram> script
        = StartedProgram::start(program, {u"-e"_qs, source}, Capture::StandardError, m_environment);
    if (!script)
        return script.failure();
    const ProcessOutcome outcome = script.value().finish();
    if (outcome.exitStatus == 0)
        return {};
    return Failure{Failure::Kind::Other, {}, QString::fromUtf8(outcome.standardOutput).trimmed()};
}

} // namespace Quillmere
