#include "Services/CommandExecution.h"

#include "Utilities/BackgroundWork.h"
#include "Utilities/LocalizationManager.h"

namespace Quillmere {

namespace {

QString textOf(const QByteArray &output)
{
    return output.isValidUtf8() ? QString::fromUtf8(output) : QString();
}

QString failureMessage(int status, const QString &output)
{
    const QString said = output.trimmed();
    const QString number = QString::number(status);
    if (said.isEmpty())
        return localized(u"tools.commandPermission"_qs) + u" ("_qs + number + u')';
    return localized(u"tools.error"_qs) + u' ' + number + u":\n"_qs + said;
}

} // namespace

QCoro::Task<Result<QString>> executeProcess(std::shared_ptr<const ProcessRunner> processes, Command command)
{
    auto running = inChildProcess([processes, command] { return processes->runJoined(command); });
    const Result<ProcessOutcome> outcome = co_await running;
    if (!outcome)
        co_return outcome.failure();
    const QString output = textOf(outcome.value().standardOutput);
    if (outcome.value().exitStatus == 0)
        co_return output;
    co_return Failure{Failure::Kind::Other, {}, failureMessage(outcome.value().exitStatus, output)};
}

} // namespace Quillmere
