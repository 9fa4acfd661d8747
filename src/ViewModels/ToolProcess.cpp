#include "ViewModels/ToolProcess.h"

#include "Utilities/BackgroundWork.h"
#include "Utilities/LocalizationManager.h"

namespace Quillmere {

namespace {

QString quotedForShell(QString word)
{
    // Nothing can stand for a single quote inside single quotes: close them, put it in double ones, open them again.
    word.replace(u'\'', u"'\"'\"'"_qs);
    return u'\'' + word + u'\'';
}

QString escapedForScript(QString text)
{
    // Backslashes first: those that stand before quotation marks are ours.
    text.replace(u'\\', u"\\\\"_qs);
    text.replace(u'"', u"\\\""_qs);
    return text;
}

QString textOf(const QByteArray &output)
{
    return output.isValidUtf8() ? QString::fromUtf8(output) : QString();
}

QString failureMessage(int status, const QString &output)
{
    const QString said = output.trimmed();
    const QString number = QString::number(status);
    if (said.isEmpty())
        return Localizer::shared().localized(u"tools.commandPermission"_qs) + u" ("_qs + number + u')';
    return Localizer::shared().localized(u"tools.error"_qs) + u' ' + number + u":\n"_qs + said;
}

} // namespace

Command elevated(const Command &command)
{
    QStringList words = {quotedForShell(command.launchPath)};
    for (const QString &argument : command.arguments)
        words.append(quotedForShell(argument));
    const QString script
        = u"do shell script \""_qs + escapedForScript(words.join(u' ')) + u"\" with administrator privileges"_qs;
    return {u"/usr/bin/osascript"_qs, {u"-e"_qs, script}};
}

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
