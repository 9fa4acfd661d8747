#include "Fakes/PretendProcessRunner.h"

#include <utility>

namespace Quillmere {

void PretendProcessRunner::answer(const QString &launchPath, Answer answer)
{
    const std::scoped_lock lock(m_mutex);
    m_answers.insert(launchPath, std::move(answer));
}

void PretendProcessRunner::answer(const QString &launchPath, const QByteArray &standardOutput)
{
    answer(launchPath, [standardOutput](const Command &) { return ProcessOutcome{0, standardOutput}; });
}

void PretendProcessRunner::hang(const QString &launchPath)
{
    const std::scoped_lock lock(m_mutex);
    m_hanging.insert(launchPath);
}

void PretendProcessRunner::answerScripts(Result<void> answer)
{
    const std::scoped_lock lock(m_mutex);
    m_scriptAnswer = std::move(answer);
}

QList<Command> PretendProcessRunner::runs() const
{
    const std::scoped_lock lock(m_mutex);
    return m_runs;
}

QList<Command> PretendProcessRunner::joinedRuns() const
{
    const std::scoped_lock lock(m_mutex);
    return m_joinedRuns;
}

QList<Command> PretendProcessRunner::starts() const
{
    const std::scoped_lock lock(m_mutex);
    return m_starts;
}

void PretendProcessRunner::onEnd(std::function<void()> observer)
{
    const std::scoped_lock lock(m_mutex);
    m_onEnd = std::move(observer);
}

QList<std::chrono::milliseconds> PretendProcessRunner::patiences() const
{
    const std::scoped_lock lock(m_mutex);
    return m_patiences;
}

QList<Command> PretendProcessRunner::launches() const
{
    const std::scoped_lock lock(m_mutex);
    return m_launches;
}

QStringList PretendProcessRunner::scripts() const
{
    const std::scoped_lock lock(m_mutex);
    return m_scripts;
}

Result<ProcessOutcome> PretendProcessRunner::run(const Command &command) const
{
    {
        const std::scoped_lock lock(m_mutex);
        m_runs.append(command);
    }
    return answerTo(command);
}

Result<ProcessOutcome> PretendProcessRunner::runJoined(const Command &command) const
{
    std::function<void()> onEnd;
    {
        const std::scoped_lock lock(m_mutex);
        m_joinedRuns.append(command);
        onEnd = m_onEnd;
    }
    const Result<ProcessOutcome> outcome = run(command);
    if (onEnd)
        onEnd();
    return outcome;
}

Result<std::optional<ProcessOutcome>> PretendProcessRunner::runWithin(std::chrono::milliseconds patience,
                                                                      const Command &command) const
{
    {
        const std::scoped_lock lock(m_mutex);
        m_runs.append(command);
        m_patiences.append(patience);
        if (m_hanging.contains(command.launchPath))
            return std::optional<ProcessOutcome>();
    }
    const Result<ProcessOutcome> outcome = answerTo(command);
    if (!outcome)
        return outcome.failure();
    return std::optional(outcome.value());
}

Result<void> PretendProcessRunner::launch(const Command &command) const
{
    {
        const std::scoped_lock lock(m_mutex);
        m_launches.append(command);
    }
    const Result<ProcessOutcome> outcome = answerTo(command);
    return outcome ? Result<void>() : Result<void>(outcome.failure());
}

Result<std::future<int>> PretendProcessRunner::start(const Command &command) const
{
    std::function<void()> onEnd;
    {
        const std::scoped_lock lock(m_mutex);
        m_starts.append(command);
        onEnd = m_onEnd;
    }
    const Result<ProcessOutcome> outcome = answerTo(command);
    if (!outcome)
        return outcome.failure();
    return std::async(std::launch::deferred, [onEnd, status = outcome.value().exitStatus] {
        if (onEnd)
            onEnd();
        return status;
    });
}

Result<void> PretendProcessRunner::executeScript(const QString &source) const
{
    const std::scoped_lock lock(m_mutex);
    m_scripts.append(source);
    return m_scriptAnswer;
}

Result<ProcessOutcome> PretendProcessRunner::answerTo(const Command &command) const
{
    Answer answer;
    {
        const std::scoped_lock lock(m_mutex);
        answer = m_answers.value(command.launchPath);
    }
    // Outside the lock: an answer may wait for the test.
    return answer ? answer(command) : ProcessOutcome();
}

} // namespace Quillmere
