#pragma once

#include "Models/RiskLevel.h"
#include "Services/DeveloperStorageLookup.h"

#include <QString>

namespace Quillmere {

/// One entry of the catalogue: a kind of data that development tools can make again.
struct CleanupGroup
{
    QString name; ///< The stable English name.
    QString localizedNameKey;
    QString descriptionKey; ///< Also what each of its items is explained by.
    RiskLevel risk = RiskLevel::Safe;
    QString icon;
    QList<FilePath> paths; ///< They need not exist.
};

/// The nine groups in their order, filled in with the folders of this user as they are now.
[[nodiscard]] QList<CleanupGroup> cleanupGroups(const DeveloperStorageLookup &lookup);

} // namespace Quillmere
