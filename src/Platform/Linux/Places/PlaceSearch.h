#pragma once

#include "Platform/Linux/Places/PlacePattern.h"
#include "Values/Cancellation.h"

#include <vector>

namespace Quillmere {

/// Looks for many places in one item at once, so that each folder is gone through a single time, and no longer than
/// something may still be found that counts more. What was added earlier counts more. Neither a link nor a mount point
/// in the item leads anywhere.
class PlaceSearch
{
public:
    PlaceSearch(const FileManager &files, FilePath item, const Cancellation &cancellation);

    /// The places of @p pattern, which must outlive this, in the item, which may also be known as @p writtenItem.
    void add(const PlacePattern &pattern, const FilePath &writtenItem, const QString &reason);
    /// Whatever is reached through a name, a socket or a pipe, in the item and in @p levels - 1 levels of folders
    /// below.
    void addSockets(int levels, const QString &reason);

    /// The reason that counts most of those whose place is there; one of its own once the search is cancelled.
    [[nodiscard]] std::optional<QString> firstReason();

private:
    struct Wanted
    {
        QList<QByteArray> way; ///< From the item to where the names begin, none where they begin in it.
        std::span<const QByteArray> names;
        QString reason;
    };
    /// What is looked for in one folder.
    struct Sought
    {
        std::span<const QByteArray> names; ///< At least one.
        size_t rank = 0; ///< The lower the more it counts.
    };
    using SoughtList = std::vector<Sought>;

    void lookThrough(OpenFolder &item);
    void lookBehind(const OpenFolder &folder, std::span<const QByteArray> way, const Sought &sought);
    void lookIn(OpenFolder &folder, const SoughtList &sought, int levelsOfSockets);
    void lookForNamed(const OpenFolder &folder, const SoughtList &sought);
    void goThrough(OpenFolder &folder, const SoughtList &open, int levelsOfSockets);
    void enter(const OpenFolder &folder, QByteArrayView name, const SoughtList &sought, int levelsOfSockets);
    void note(size_t rank) { m_best = std::min(m_best, rank); }

    const FileManager &m_files;
    const FilePath m_item;
    const Cancellation m_cancellation;
    std::vector<Wanted> m_wanted;
    bool m_isSettled = false; ///< The item is such a place itself; what is added later no longer counts.
    int m_levelsOfSockets = 0;
    QString m_reasonOfSockets;
    size_t m_best = 0; ///< The lowest rank found; as many as there are where none is.
};

} // namespace Quillmere
