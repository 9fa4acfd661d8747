#include "ViewModels/RunningPrograms.h"

#include <algorithm>

namespace Quillmere {

RunningPrograms RunningPrograms::of(const Workspace &workspace)
{
    return {workspace.runningApplications(), workspace.runningPrograms()};
}

bool RunningPrograms::isAnyOf(const FoundApplication &found) const
{
    const AppItem &app = found.item;
    const QList<FilePath> parts = found.parts();
    const auto isApp = [&](const RunningApplication &each) {
        return (!app.bundleIdentifier.isEmpty() && each.bundleIdentifier == app.bundleIdentifier)
            || (each.bundleLocation && each.bundleLocation->isWithin(app.path));
    };
    const auto isIn = [&](const FilePath &program) {
        return program.isWithin(app.path)
            || std::ranges::any_of(parts, [&](const FilePath &part) { return program.isWithin(part); });
    };
    return std::ranges::any_of(applications, isApp) || std::ranges::any_of(programs, isIn);
}

} // namespace Quillmere
