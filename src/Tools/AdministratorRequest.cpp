#include "Tools/AdministratorRequest.h"

#include "Tools/BundleInstallation.h"
#include "Tools/Disks/DiskRequests.h"

#include <algorithm>
#include <array>

namespace Quillmere {

namespace {

/// Commands that are known word by word.
struct ExactCommand
{
    ShellCommands commands;
    AdministratorRequest request;
};

const std::array exactCommands = {
    ExactCommand{{{u"pmset"_qs, u"-a"_qs, u"disablesleep"_qs, u"1"_qs}}, {u"keep-awake"_qs, {u"on"_qs}}},
    ExactCommand{{{u"pmset"_qs, u"-a"_qs, u"disablesleep"_qs, u"0"_qs}}, {u"keep-awake"_qs, {u"off"_qs}}},
    ExactCommand{{{u"/usr/sbin/purge"_qs}}, {u"purge"_qs, {}}},
    ExactCommand{{{u"/usr/bin/mdutil"_qs, u"-E"_qs, u"/"_qs}}, {u"reset-index"_qs, {}}},
    ExactCommand{{{u"/usr/bin/killall"_qs, u"-HUP"_qs, u"mDNSResponder"_qs}}, {u"flush-names"_qs, {}}},
};

// Known as a whole: it asks the shell for more than to run words, and no part of it runs here.
const QString driverText
    = u"if [ -f /opt/homebrew/bin/brew ]; then /opt/homebrew/bin/brew install --cask macfuse && "
      "/opt/homebrew/bin/brew install ntfs-3g-mac; elif [ -f /usr/local/bin/brew ]; then "
      "/usr/local/bin/brew install --cask macfuse && /usr/local/bin/brew install ntfs-3g-mac; else "
      "echo 'Homebrew is required to download/compile NTFS-3G and macFUSE'; exit 1; fi"_qs;

std::optional<AdministratorRequest> exactRequest(const ShellCommands &commands)
{
    const auto known = std::ranges::find(exactCommands, commands, &ExactCommand::commands);
    return known == exactCommands.end() ? std::nullopt : std::optional(known->request);
}

/// `rm -rf D && /usr/bin/ditto S D` for the one D that there is.
std::optional<AdministratorRequest> bundleRequest(const ShellCommands &commands)
{
    const QString destination = BundleInstallation::usualDestination();
    if (commands.size() != 2 || commands.at(0) != QStringList{u"rm"_qs, u"-rf"_qs, destination})
        return std::nullopt;
    const QStringList &copying = commands.at(1);
    if (copying.size() != 3 || copying.at(0) != u"/usr/bin/ditto" || copying.at(2) != destination)
        return std::nullopt;
    return AdministratorRequest{u"install-bundle"_qs, {copying.at(1)}};
}

// Each looks at the commands alone and knows nothing of the others; the first that knows them answers.
constexpr std::array recognisers = {&exactRequest, &bundleRequest, &diskRequestFor};

std::optional<AdministratorRequest> recognised(const ShellCommands &commands)
{
    for (const auto recognise : recognisers) {
        if (const auto request = recognise(commands))
            return request;
    }
    return std::nullopt;
}

} // namespace

std::optional<AdministratorRequest> requestFor(const QString &shellText)
{
    if (shellText == driverText)
        return AdministratorRequest{u"install-drivers"_qs, {}};
    const std::optional<ShellCommands> commands = parseShellText(shellText);
    return commands ? recognised(*commands) : std::nullopt;
}

} // namespace Quillmere
