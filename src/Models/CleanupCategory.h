#pragma once

#include "Models/CleanupItem.h"

#include <QList>

namespace Quillmere {

/// One group of items, a row of a cleanup screen. Owns its items by value.
struct CleanupCategory
{
    QUuid id = QUuid::createUuid(); ///< Never changed once made.
    QString name; ///< The stable English name that the history records.
    QString localizedName; ///< Resolved when the category is built; a later change of language leaves it.
    QString description; ///< Resolved like localizedName.
    RiskLevel riskLevel = RiskLevel::Safe;
    qint64 totalSize = 0; ///< Sum of the items' sizes in bytes; 0 until the scan of the category has ended.
    qint64 itemCount = 0; ///< Count of the items; 0 until the scan of the category has ended.
    bool isSelected = true; ///< A run cleans every item of a selected category, whatever the item says.
    bool isAvailable = true; ///< False for a row of a read-only inventory.
    bool requiresPermission = false;
    QList<CleanupItem> items;
    QString icon; ///< Name of a symbol.

    bool operator==(const CleanupCategory &) const = default;
};

} // namespace Quillmere
