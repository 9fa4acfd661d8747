#include "Tools/Osascript.h"

#include "Tools/AdministratorRequest.h"
#include "Tools/ChildProgram.h"
#include "Tools/DialogTurn.h"
#include "Tools/ScriptText.h"

#include <utility>

namespace Quillmere {

namespace {

// pkexec(1): the user dismissed the dialog.
constexpr int dismissed = 126;
constexpr int userCanceled = -128;

ToolEnd executionError(const QString &reason, int number)
{
    return {1, u"execution error: %1 (%2)"_qs.arg(reason, QString::number(number))};
}

std::optional<AdministratorRequest> requestOfScript(const QString &script)
{
    const std::optional<QString> text = shellTextOfScript(script);
    return text ? requestFor(*text) : std::nullopt;
}

Command commandFor(const AdministratorRequest &request, const ElevationSettings &settings)
{
    const QStringList words = QStringList{request.verb} + request.arguments;
    if (settings.isRoot)
        return {settings.administrator, words};
    return {settings.pkexec, QStringList{u"--disable-internal-agent"_qs, settings.administrator} + words};
}

ToolEnd notCarriedOut(const AdministratorRequest &request, const ElevationSettings &settings, NotCarriedOut why,
                      const QString &reason, int number = 1)
{
    ToolEnd end = executionError(reason, number);
    if (settings.notCarriedOut)
        end.report = settings.notCarriedOut(request, why, reason);
    return end;
}

/// pkexec has @p turn for as long as its dialog is there, and the administrator program gives it on at its start.
ToolEnd carryOut(const AdministratorRequest &request, const ElevationSettings &settings, FileDescriptor turn)
{
    const Result<ChildEnd> end = runChild(commandFor(request, settings), std::move(turn));
    if (!end)
        return notCarriedOut(request, settings, NotCarriedOut::Failed, end.failure().detail);
    const int status = end.value().status;
    const QString text = QString::fromUtf8(end.value().said).trimmed();
    if (status == 0 && settings.carriedOut)
        settings.carriedOut(request);
    if (status == 0)
        return {0, text};
    if (status == dismissed && !settings.isRoot)
        return notCarriedOut(request, settings, NotCarriedOut::Dismissed, u"User canceled."_qs, userCanceled);
    const NotCarriedOut why = status == ToolEnd::notBegun ? NotCarriedOut::NotBegun : NotCarriedOut::Failed;
    return notCarriedOut(request, settings, why, text.isEmpty() ? u"The command failed."_qs : text, status);
}

} // namespace

ToolEnd runOsascript(const QStringList &arguments, const ElevationSettings &settings)
{
    if (arguments.size() != 2 || arguments.first() != u"-e")
        return {ToolEnd::wrongUse, u"usage: osascript -e SCRIPT"_qs};
    const std::optional<AdministratorRequest> request = requestOfScript(arguments.at(1));
    if (!request)
        return executionError(u"This script is none of those that can be carried out here; nothing was done."_qs, 1);
    if (!settings.isRoot && !settings.mayAskUser)
        return executionError(u"There is no system bus to ask for administrator rights on."_qs, 1);
    // First of all, so that the request is completed from how things are when the dialog comes up.
    FileDescriptor turn = settings.isRoot ? FileDescriptor() : awaitDialogTurn(settings.runtimeFolder);
    const Result<AdministratorRequest> complete = settings.complete ? settings.complete(*request) : *request;
    return complete ? carryOut(complete.value(), settings, std::move(turn))
                    : notCarriedOut(*request, settings, NotCarriedOut::Failed, complete.failure().detail);
}

} // namespace Quillmere
