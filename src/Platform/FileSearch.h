#pragma once

#include "Values/FilePath.h"

#include <QDateTime>

#include <functional>
#include <optional>

namespace Quillmere {

/// A regular file that a search has found.
struct FoundFile
{
    FilePath path;
    qint64 allocatedSize = 0; ///< Bytes occupied on disk: a sparse file keeps below its length.
    std::optional<QDateTime> accessed; ///< UTC. None where the file system does not keep it.
    std::optional<QDateTime> modified; ///< UTC. None where the file system does not keep it.

    bool operator==(const FoundFile &) const = default;
};

/// What is looked for in a tree, and who is told how far the search has come.
struct FileSearch
{
    /// Told of every item whose number is a multiple of itemsPerReport: its number, and its name. Called on any of the
    /// search's threads, one call at a time, with rising numbers; a number that would come late is left out.
    using Progress = std::function<void(qint64 number, const QByteArray &name)>;

    qint64 leastAllocatedSize = 0; ///< Bytes on disk that a file must have to be found.
    QByteArray closedFolder; ///< What stands below a folder of this name is never found. Empty: no such folder.
    int itemsPerReport = 100;
    Progress progress; ///< May be empty.
};

} // namespace Quillmere
