#pragma once

#include "Platform/Workspace.h"
#include "Services/FoundApplication.h"

#include <QSet>

namespace Quillmere {

/// What runs, by what the desktop and the system know.
struct RunningPrograms
{
    QList<RunningApplication> applications;
    QSet<FilePath> programs;

    /// Asks both. May wait for the desktop.
    [[nodiscard]] static RunningPrograms of(const Workspace &workspace);
    [[nodiscard]] bool isAnyOf(const FoundApplication &found) const;
};

} // namespace Quillmere
