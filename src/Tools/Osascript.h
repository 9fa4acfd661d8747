#pragma once

#include "Platform/Linux/Files/RuntimeFolder.h"
#include "Tools/AdministratorRequest.h"
#include "Tools/ToolEnd.h"
#include "Values/Result.h"

#include <QStringList>

#include <functional>

namespace Quillmere {

/// Why a request was not carried out.
enum class NotCarriedOut {
    Dismissed, ///< The user did not want it.
    NotBegun, ///< Something was in the way of it, and nothing was changed.
    Failed,
};

/// How rights are come by on this machine.
struct ElevationSettings
{
    QString pkexec = u"/usr/bin/pkexec"_qs;
    QString administrator; ///< The program that carries out requests. Absolute.
    bool isRoot = false; ///< Nobody is asked then.
    /// pkexec asks on the machine's own system bus, whatever the environment says. False where we would be on another.
    bool mayAskUser = true;
    /// Where those who are to ask the user wait for each other. Nobody waits where nothing can be kept.
    RuntimeFolder runtimeFolder{FilePath()};
    /// Completes a request with what this user alone knows, before anybody is asked. Fails with a sentence for one that
    /// is not to be carried out. May be empty.
    std::function<Result<AdministratorRequest>(const AdministratorRequest &)> complete;
    /// Called after a request was carried out, with what the user's own rights suffice for. May be empty.
    std::function<void(const AdministratorRequest &)> carriedOut;
    /// The same after one that was not, for the reason given. Answers with what standard output is to say of it; empty
    /// where there is nothing to say. May be empty.
    std::function<QString(const AdministratorRequest &, NotCarriedOut why, const QString &reason)> notCarriedOut;
};

/// Carries out the command `osascript` with @p arguments: of scripts it knows only those that run one of the known
/// commands with administrator privileges. Starts nothing for any other, and never a shell.
[[nodiscard]] ToolEnd runOsascript(const QStringList &arguments, const ElevationSettings &settings);

} // namespace Quillmere
