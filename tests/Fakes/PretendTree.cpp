#include "Fakes/PretendTree.h"

#include "Fakes/PretendFailure.h"

namespace Quillmere {

namespace {

// The kernel gives up after 40 links; more is a loop.
constexpr int mostLinksFollowed = 40;

} // namespace

PretendTree::PretendTree()
{
    m_nodes["/"] = PretendNode{};
}

PretendNode *PretendTree::find(const FilePath &path)
{
    const auto found = m_nodes.find(path.standardized().bytes());
    return found == m_nodes.end() ? nullptr : &found->second;
}

PretendNode &PretendTree::insert(const FilePath &path, PretendNode node)
{
    const FilePath place = path.standardized();
    const FilePath parent = place.deletingLastPathComponent();
    if (!find(parent))
        insert(parent, {});
    QList<QByteArray> &siblings = find(parent)->children;
    if (!siblings.contains(place.lastPathComponent()))
        siblings.append(place.lastPathComponent());
    return m_nodes[place.bytes()] = std::move(node);
}

void PretendTree::detach(const FilePath &path)
{
    const FilePath place = path.standardized();
    if (PretendNode *parent = find(place.deletingLastPathComponent()))
        parent->children.removeOne(place.lastPathComponent());
    std::erase_if(m_nodes, [&](const auto &entry) { return FilePath(entry.first).isWithin(place); });
}

std::vector<std::pair<FilePath, PretendNode>> PretendTree::within(const FilePath &path) const
{
    std::vector<std::pair<FilePath, PretendNode>> found;
    for (const auto &[bytes, node] : m_nodes) {
        if (const FilePath place(bytes); place.isWithin(path))
            found.emplace_back(place, node);
    }
    return found;
}

std::optional<FilePath> PretendTree::resolve(const FilePath &path)
{
    QList<QByteArray> waiting = path.standardized().bytes().split('/');
    FilePath reached("/");
    int links = 0;
    while (!waiting.isEmpty()) {
        const QByteArray name = waiting.takeFirst();
        if (name.isEmpty())
            continue;
        const FilePath next = reached.appending(name).standardized();
        const PretendNode *node = find(next);
        if (!node)
            return std::nullopt;
        if (node->type != EntryKind::SymbolicLink) {
            reached = next;
            continue;
        }
        if (++links > mostLinksFollowed)
            return std::nullopt;
        const FilePath target
            = node->target.bytes().startsWith('/') ? node->target : reached.appending(node->target.bytes());
        waiting = target.standardized().bytes().split('/') + waiting;
        reached = FilePath("/");
    }
    return reached;
}

FilePath PretendTree::placeOf(const FilePath &path)
{
    const FilePath parent = path.standardized().deletingLastPathComponent();
    const std::optional<FilePath> resolved = resolve(parent);
    const FilePath folder = resolved || parent == path ? resolved.value_or(parent) : placeOf(parent);
    return folder.appending(path.standardized().lastPathComponent());
}

FilePath PretendTree::volumeOf(const FilePath &path) const
{
    FilePath folder = path;
    while (!m_volumes.contains(folder))
        folder = folder.deletingLastPathComponent();
    return folder;
}

Result<PretendNode *> PretendTree::findRemovable(const FilePath &path)
{
    const FilePath parent = path.standardized().deletingLastPathComponent();
    const std::optional<FilePath> resolvedParent = resolve(parent);
    if (resolvedParent && *resolvedParent != parent)
        return pretendedFailure(Failure::Kind::LinkInPath, path);
    PretendNode *node = find(path);
    if (!node)
        return pretendedFailure(Failure::Kind::NotFound, path);
    if (node->refusal)
        return pretendedFailure(*node->refusal, path);
    return node;
}

} // namespace Quillmere
