#include "Platform/Linux/Removal/RemovalPool.h"

#include "Platform/Linux/Removal/DeepRemoval.h"

#include <cerrno>
#include <system_error>

#include <unistd.h>

namespace Quillmere {

namespace {

constexpr int deepestShared = 32;
constexpr size_t foldersWorthHelpers = 8;

} // namespace

RemovalPool::RemovalPool(int threads, const MayRemove &mayRemove, RemovalRecord &record)
    : m_threads(threads)
    , m_mayRemove(mayRemove)
    , m_record(record)
{
}

void RemovalPool::remove(int parent, const QByteArray &name, FileDescriptor folder, const FilePath &path)
{
    m_parent = parent;
    m_path = path;
    auto top = std::make_shared<Node>();
    top->name = name;
    top->folder = std::move(folder);
    add({top});
    top.reset();
    work();
    m_helpers.clear();
}

void RemovalPool::work()
{
    while (const std::shared_ptr<Node> node = next())
        process(node);
}

std::shared_ptr<RemovalPool::Node> RemovalPool::next()
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [&] { return m_finished || !m_waiting.empty(); });
    if (m_waiting.empty())
        return nullptr;
    std::shared_ptr<Node> node = std::move(m_waiting.back());
    m_waiting.pop_back();
    return node;
}

void RemovalPool::add(const std::vector<std::shared_ptr<Node>> &nodes)
{
    const std::scoped_lock lock(m_mutex);
    m_waiting.insert(m_waiting.end(), nodes.begin(), nodes.end());
    if (m_waiting.size() >= foldersWorthHelpers && m_helpers.empty())
        startHelpers();
    m_changed.notify_all();
}

void RemovalPool::startHelpers()
{
    try {
        for (int helper = 1; helper < m_threads; ++helper)
            m_helpers.emplace_back([this] { work(); });
    } catch (const std::system_error &) {
        // The machine gives no more threads; those that are there do the work.
    }
}

void RemovalPool::finishAll()
{
    const std::scoped_lock lock(m_mutex);
    m_finished = true;
    m_changed.notify_all();
}

void RemovalPool::process(const std::shared_ptr<Node> &node)
{
    if (!open(*node)) {
        climb(node);
        return;
    }
    const FolderSweep sweep = sweepFolder(node->folder.number(), m_mayRemove);
    ++node->sweeps;
    m_record.addRemoved(sweep.removed);
    for (const FolderSweep::Refusal &refusal : sweep.refusals)
        fail(*node, refusal.name, refusal.error);
    if (node->depth == deepestShared)
        removeDeeper(*node, sweep.folders);
    if (node->depth == deepestShared || sweep.folders.isEmpty()) {
        climb(node);
        return;
    }
    node->foldersLeft = sweep.folders.size();
    std::vector<std::shared_ptr<Node>> children;
    for (const QByteArray &name : sweep.folders) {
        children.push_back(std::make_shared<Node>());
        children.back()->parent = node;
        children.back()->name = name;
        children.back()->depth = node->depth + 1;
    }
    add(children);
}

bool RemovalPool::open(Node &node)
{
    if (node.folder.isOpen())
        return true;
    Node &parent = *node.parent;
    node.folder = openFolderToEmpty(parent.folder.number(), node.name);
    if (node.folder.isOpen())
        return true;
    int error = errno;
    // A link or a file has taken the folder's place: that goes, itself.
    if (error == ELOOP || error == ENOTDIR)
        error = removeEntry(parent.folder.number(), node.name.constData(), m_mayRemove);
    if (error != 0 && error != ENOENT)
        fail(parent, node.name, error);
    return false;
}

void RemovalPool::removeDeeper(Node &node, const QList<QByteArray> &folders)
{
    for (const QByteArray &name : folders) {
        if (!DeepRemoval(node.folder.number(), location(node), m_mayRemove, m_record).remove(name))
            node.failed = true;
    }
}

void RemovalPool::climb(std::shared_ptr<Node> node)
{
    for (;;) {
        if (node->folder.isOpen() && !removeEmptied(*node)) {
            add({node});
            return;
        }
        const std::shared_ptr<Node> parent = node->parent;
        if (!parent) {
            finishAll();
            return;
        }
        if (node->failed)
            parent->failed = true;
        if (--parent->foldersLeft > 0)
            return;
        node = parent;
    }
}

bool RemovalPool::removeEmptied(Node &node)
{
    if (node.failed)
        return true;
    const bool topmost = !node.parent;
    const int error = topmost ? removeEmptyFolder(m_parent, node.name)
                              : removeEmptyFolderOrEntry(node.parent->folder.number(), node.name, m_mayRemove);
    if (error == ENOTEMPTY && node.sweeps < mostSweeps && ::lseek(node.folder.number(), 0, SEEK_SET) == 0)
        return false;
    if (error == 0)
        m_record.addRemoved(1);
    else if (topmost || error != ENOENT) // Only of the whole item it matters who was the one to remove it.
        fail(node, {}, error);
    return true;
}

void RemovalPool::fail(Node &node, const QByteArray &name, int error)
{
    node.failed = true;
    m_record.addFailure(error, location(node).appending(name).standardized());
}

FilePath RemovalPool::location(const Node &node) const
{
    QByteArray relative;
    for (const Node *step = &node; step->parent; step = step->parent.get())
        relative.prepend(step->name + '/');
    return m_path.appending(relative).standardized();
}

} // namespace Quillmere
