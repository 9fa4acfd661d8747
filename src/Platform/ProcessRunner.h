#pragma once

#include "Values/Result.h"

#include <QByteArray>
#include <QStringList>

#include <chrono>
#include <future>
#include <optional>

namespace Quillmere {

/// A program and what it is told, each argument as the program receives it: no shell stands between.
struct Command
{
    QString launchPath; ///< Absolute.
    QStringList arguments;

    bool operator==(const Command &) const = default;
};

/// What a program has left behind.
struct ProcessOutcome
{
    int exitStatus = 0; ///< 128 plus the signal where one ended it.
    QByteArray standardOutput; ///< With standard error in it where the two share a pipe.

    bool operator==(const ProcessOutcome &) const = default;
};

/// Starts other programs. The paths are those of the system's own commands; a platform without them carries each out
/// in its own way. Safe to call from any thread.
class ProcessRunner
{
public:
    virtual ~ProcessRunner() = default;

    /// Waits until the program has ended and has closed its output. Standard error goes where the program's own goes.
    /// Fails when it cannot be started.
    [[nodiscard]] virtual Result<ProcessOutcome> run(const Command &command) const = 0;
    /// The same with both outputs in one pipe, in the order in which they are written. Of more than 1 MiB only the
    /// end is kept, below a line that says how much is left out.
    [[nodiscard]] virtual Result<ProcessOutcome> runJoined(const Command &command) const = 0;
    /// Waits until the program has ended, whatever it has started, but no longer than @p patience. Both its outputs go
    /// into one pipe and are read only then, so that one that writes more than a pipe holds does not end by itself.
    /// Nothing when it was late: it has then been terminated with all that it started in its own process group, and
    /// killed if it took no notice. Fails when it cannot be started.
    [[nodiscard]] virtual Result<std::optional<ProcessOutcome>> runWithin(std::chrono::milliseconds patience,
                                                                          const Command &command) const = 0;
    /// Starts the program and leaves it to itself. Fails when it cannot be started.
    [[nodiscard]] virtual Result<void> launch(const Command &command) const = 0;
    /// The same, and the future brings the status with which it ends. Nobody need wait for it.
    [[nodiscard]] virtual Result<std::future<int>> start(const Command &command) const = 0;
    /// Carries out the text of a script and waits for its end, which may be as late as the user answers the system's
    /// password dialog. Fails with what the script failed of.
    [[nodiscard]] virtual Result<void> executeScript(const QString &source) const = 0;
};

} // namespace Quillmere
