#pragma once

#include "Values/Cancellation.h"
#include "Values/FilePath.h"

#include <QList>

#include <optional>

namespace Quillmere {

/// One of the program's own tables of places, behind which this platform may have rows of its own.
enum class PlaceTable { UserCache, UserLogs, ContainerCache, TemporaryFiles };

/// A folder whose immediate children are offered for cleaning.
struct PlaceRow
{
    FilePath root;
    QByteArray suffix; ///< Where each child keeps what is offered, relative to it. Empty: the child itself.

    bool operator==(const PlaceRow &) const = default;
};

/// Something on the disk that is taken as a whole.
struct PlaceEntry
{
    QString name; ///< How it is called, where its list names its entries. Otherwise empty.
    FilePath path;

    bool operator==(const PlaceEntry &) const = default;
};

/// The places that this platform adds behind the program's tables, and what is never to be offered.
/// Safe to call from any thread.
class Places
{
public:
    virtual ~Places() = default;

    /// In the order in which they follow the table's own row. Rows need not exist on disk.
    [[nodiscard]] virtual QList<PlaceRow> rowsBehind(PlaceTable table) const = 0;
    /// What this platform adds behind the program's own list of places that is known by @p list, as the disk is at this
    /// moment: in order, each once, and only what exists.
    [[nodiscard]] virtual QList<PlaceEntry> entriesBehind(const QString &list) const = 0;
    /// Why @p item is not offered, because it is, or holds, something that would not come back; in English, for
    /// developers. Nothing when it may be offered. A look that is cancelled is a reason, too.
    [[nodiscard]] virtual std::optional<QString> reasonToKeep(const FilePath &item,
                                                              const Cancellation &cancellation) const = 0;
    [[nodiscard]] std::optional<QString> reasonToKeep(const FilePath &item) const { return reasonToKeep(item, {}); }
};

} // namespace Quillmere
