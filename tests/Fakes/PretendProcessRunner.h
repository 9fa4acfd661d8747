#pragma once

#include "Platform/ProcessRunner.h"

#include <QHash>
#include <QSet>

#include <functional>
#include <mutex>

namespace Quillmere {

/// Starts nothing: it remembers what it was asked to start, and answers as it was told. Safe to call from any thread.
class PretendProcessRunner final : public ProcessRunner
{
public:
    using Answer = std::function<Result<ProcessOutcome>(const Command &)>;

    /// From now on commands of @p launchPath are answered so. Others end well and print nothing.
    void answer(const QString &launchPath, Answer answer);
    void answer(const QString &launchPath, const QByteArray &standardOutput);
    /// From now on commands of @p launchPath never come to their end by themselves, where somebody waits only so long.
    void hang(const QString &launchPath);
    /// Called before a started program, or one with joined outputs, ends, on the thread that waits for it.
    void onEnd(std::function<void()> observer);
    /// From now on scripts are answered so.
    void answerScripts(Result<void> answer);

    [[nodiscard]] QList<Command> runs() const; ///< What was run and awaited, in its order.
    [[nodiscard]] QList<Command> joinedRuns() const; ///< Those of them with both outputs in one pipe, in their order.
    [[nodiscard]] QList<Command> launches() const; ///< What was started and left, in its order.
    [[nodiscard]] QList<Command> starts() const; ///< What was started and may be waited for, in its order.
    [[nodiscard]] QList<std::chrono::milliseconds> patiences() const; ///< How long was waited at most, in its order.
    [[nodiscard]] QStringList scripts() const; ///< In their order.

    [[nodiscard]] Result<ProcessOutcome> run(const Command &command) const override;
    [[nodiscard]] Result<ProcessOutcome> runJoined(const Command &command) const override;
    [[nodiscard]] Result<std::optional<ProcessOutcome>> runWithin(std::chrono::milliseconds patience,
                                                                  const Command &command) const override;
    [[nodiscard]] Result<void> launch(const Command &command) const override;
    [[nodiscard]] Result<std::future<int>> start(const Command &command) const override;
    [[nodiscard]] Result<void> executeScript(const QString &source) const override;

private:
    [[nodiscard]] Result<ProcessOutcome> answerTo(const Command &command) const;

    mutable std::mutex m_mutex;
    QHash<QString, Answer> m_answers;
    QSet<QString> m_hanging;
    Result<void> m_scriptAnswer;
    std::function<void()> m_onEnd;
    mutable QList<Command> m_runs;
    mutable QList<Command> m_joinedRuns;
    mutable QList<std::chrono::milliseconds> m_patiences;
    mutable QList<Command> m_launches;
    mutable QList<Command> m_starts;
    mutable QStringList m_scripts;
};

} // namespace Quillmere
