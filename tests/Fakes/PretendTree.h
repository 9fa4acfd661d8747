#pragma once

#include "Platform/FileManager.h"

#include <QSet>

#include <map>
#include <utility>
#include <vector>

namespace Quillmere {

/// One entry of a pretend disk.
struct PretendNode
{
    EntryKind type = EntryKind::Directory;
    qint64 bytes = 0;
    std::optional<qint64> allocated; ///< None: as many as bytes.
    std::optional<QDateTime> accessed;
    std::optional<QDateTime> modified;
    QByteArray contents;
    FilePath target;
    QList<QByteArray> children;
    bool locked = false;
    bool ownedByUser = true;
    bool executable = false;
    std::optional<Failure::Kind> refusal;
};

/// The entries of a pretend disk by their locations, which begin with nothing but the root. Not safe for threads.
class PretendTree final
{
public:
    PretendTree();

    [[nodiscard]] PretendNode *find(const FilePath &path);
    /// Missing parents are made.
    PretendNode &insert(const FilePath &path, PretendNode node);
    void detach(const FilePath &path);
    /// @p path and all below it, each folder ahead of what it holds.
    [[nodiscard]] std::vector<std::pair<FilePath, PretendNode>> within(const FilePath &path) const;
    /// Every link followed; nothing when a component is missing or the links go round.
    [[nodiscard]] std::optional<FilePath> resolve(const FilePath &path);
    /// Where @p path leads: links above it followed, as far as there is anything.
    [[nodiscard]] FilePath placeOf(const FilePath &path);
    [[nodiscard]] Result<PretendNode *> findRemovable(const FilePath &path);

    void addVolume(const FilePath &path) { m_volumes.insert(path); }
    [[nodiscard]] bool isVolume(const FilePath &path) const { return m_volumes.contains(path); }
    /// Where the file system begins that holds @p path, which is free of links.
    [[nodiscard]] FilePath volumeOf(const FilePath &path) const;

private:
    std::map<QByteArray, PretendNode> m_nodes;
    QSet<FilePath> m_volumes = {FilePath("/")};
};

} // namespace Quillmere
