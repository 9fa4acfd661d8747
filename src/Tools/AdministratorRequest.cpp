#include "Tools/AdministratorRequest.h"

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
    ExactCommand{{{u"purge"_qs}}, {u"purge"_qs, {}}},
    ExactCommand{{{u"/usr/sbin/purge"_qs}}, {u"purge"_qs, {}}},
};

std::optional<AdministratorRequest> exactRequest(const ShellCommands &commands)
{
    const auto known = std::ranges::find(exactCommands, commands, &ExactCommand::commands);
    return known == exactCommands.end() ? std::nullopt : std::optional(known->request);
}

// Each looks at the commands alone and knows nothing of the others; the first that knows them answers.
constexpr std::array recognisers = {&exactRequest, &diskRequestFor};

} // namespace

std::optional<AdministratorRequest> requestFor(const ShellCommands &commands)
{
    for (const auto recognise : recognisers) {
        if (const auto request = recognise(commands))
            return request;
    }
    return std::nullopt;
}

} // namespace Quillmere
