#pragma once

#include "Models/RiskLevel.h"
#include "Values/FilePath.h"

#include <QDateTime>
#include <QUuid>

#include <optional>

namespace Quillmere {

/// One deletable thing on disk, a folder more often than a file.
struct CleanupItem
{
    QUuid id = QUuid::createUuid(); ///< Never changed once made.
    QString name; ///< What a row shows.
    FilePath path; ///< Of a container's item: the cache folder inside the container.
    qint64 size = 0; ///< Bytes on disk when it was scanned.
    QString category; ///< The free-form word that the rule of deletion inspects, such as "Caches".
    RiskLevel riskLevel = RiskLevel::Safe;
    bool isSelected = true;
    bool isDeletable = true; ///< False keeps it from any removal.
    bool requiresPermission = false;
    bool requiresAppClosed = false;
    std::optional<QString> ownerApp;
    std::optional<QDateTime> lastModified;
    QString explanation; ///< May be empty.
    QString recommendedAction = u"Move to Trash"_qs;

    bool operator==(const CleanupItem &) const = default;
};

} // namespace Quillmere
