#pragma once

#include <QStringList>
#include <QUuid>

namespace Quillmere {

/// The outcome of one cleanup run.
struct CleanupResult
{
    qint64 filesRemoved = 0; ///< Items trashed or deleted; a folder counts once.
    qint64 sizeCleaned = 0; ///< Sum of the removed items' sizes as scanned, in bytes.
    qint64 filesSkipped = 0; ///< Items that reached the run and were not removed.
    QStringList errors; ///< A line for each failed removal, in the order of the items.

    bool operator==(const CleanupResult &) const = default;
};

/// A result with an identity of its own, so that the report opens anew for each run.
struct CleanupResultWrapper
{
    QUuid id = QUuid::createUuid();
    CleanupResult result;
};

} // namespace Quillmere
