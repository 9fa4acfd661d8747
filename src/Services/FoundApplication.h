#pragma once

#include "Models/AppItem.h"
#include "Platform/InstalledApplications.h"

#include <optional>

namespace Quillmere {

/// An application that a scan has found: a bundle, or one that the platform adds.
struct FoundApplication
{
    AppItem item;
    std::optional<ListedApplication> listed; ///< What the platform knows of one that is no bundle.

    /// All that it alone is on disk, beside its own place.
    [[nodiscard]] QList<FilePath> parts() const { return listed ? listed->parts : QList<FilePath>(); }
    /// False for what only the administrator's tools can remove.
    [[nodiscard]] bool canBeUninstalled() const { return !listed || listed->removal != ApplicationRemoval::System; }

    bool operator==(const FoundApplication &) const = default;
};

} // namespace Quillmere
