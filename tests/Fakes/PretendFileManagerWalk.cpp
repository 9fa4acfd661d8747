// Measuring and searching whole trees of this disk.
#include "Fakes/PretendFileManager.h"

#include "Fakes/PretendFailure.h"
#include "Platform/PackageNames.h"

#include <algorithm>

namespace Quillmere {

Result<TreeSize> PretendFileManager::measureTree(const FilePath &folder, const Cancellation &cancellation) const
{
    const std::scoped_lock guard(m_mutex);
    TreeSize size;
    bool wasStopped = false;
    const PretendNode *node = m_tree.find(folder);
    if (isAnswering(folder) && node && node->type == EntryKind::Directory)
        wasStopped = !measure(folder.standardized(), size, cancellation);
    if (wasStopped)
        return pretendedFailure(Failure::Kind::Cancelled, folder);
    return size;
}

/// Lets others at the disk for a while.
class PretendFileManager::Unlocked
{
public:
    explicit Unlocked(std::recursive_mutex &mutex)
        : m_mutex(mutex)
    {
        m_mutex.unlock();
    }
    ~Unlocked() { m_mutex.lock(); }
    Q_DISABLE_COPY_MOVE(Unlocked)

private:
    std::recursive_mutex &m_mutex;
};

bool PretendFileManager::measure(const FilePath &folder, TreeSize &size, const Cancellation &cancellation) const
{
    const PretendNode *node = m_tree.find(folder);
    if (!node || node->locked)
        return true;
    const QList<QByteArray> children = node->children;
    for (const QByteArray &name : children) {
        const FilePath path = folder.appending(name);
        if (m_onMeasure) {
            const Unlocked whileItLooks(m_mutex);
            m_onMeasure(path);
        }
        if (cancellation.isRequested())
            return false;
        const PretendNode *child = m_tree.find(path);
        if (!child || (child->type == EntryKind::Regular && child->locked))
            continue;
        if (m_tree.isVolume(path))
            continue;
        if (child->type == EntryKind::Directory) {
            if (!measure(path, size, cancellation))
                return false;
        } else if (child->type == EntryKind::Regular) {
            size.allocatedSize += child->allocated.value_or(child->bytes);
            ++size.fileCount;
        }
    }
    return true;
}

/// One search under way.
struct PretendFileManager::Searching
{
    const FileSearch &search;
    const Cancellation &cancellation;
    qint64 items = 0;
    QList<FoundFile> found;
};

Result<QList<FoundFile>> PretendFileManager::findFiles(const FilePath &folder, const FileSearch &search,
                                                       const Cancellation &cancellation) const
{
    const std::scoped_lock guard(m_mutex);
    Searching searching{search, cancellation, 0, {}};
    const PretendNode *node = m_tree.find(folder);
    const bool isSearched = node && node->type == EntryKind::Directory && isAnswering(folder);
    if (isSearched && !this->search(folder.standardized(), searching))
        return pretendedFailure(Failure::Kind::Cancelled, folder);
    std::ranges::sort(searching.found, {}, [](const FoundFile &file) { return file.path.bytes().split('/'); });
    return searching.found;
}

bool PretendFileManager::search(const FilePath &folder, Searching &searching) const
{
    const PretendNode *node = m_tree.find(folder);
    if (!node || node->locked)
        return true;
    const FileSearch &search = searching.search;
    const bool isClosed
        = !search.closedFolder.isEmpty() && (folder.bytes() + '/').contains('/' + search.closedFolder + '/');
    const QList<QByteArray> children = node->children;
    for (const QByteArray &name : children) {
        const FilePath path = folder.appending(name);
        if (m_onMeasure)
            m_onMeasure(path);
        if (searching.cancellation.isRequested())
            return false;
        if (name.startsWith('.'))
            continue;
        if (++searching.items % search.itemsPerReport == 0 && search.progress)
            search.progress(searching.items, name);
        const PretendNode *child = m_tree.find(path);
        if (isClosed || !child)
            continue;
        const qint64 allocated = child->allocated.value_or(child->bytes);
        if (m_tree.isVolume(path))
            continue;
        if (child->type == EntryKind::Directory && !isPackageName(name.constData())) {
            if (!this->search(path, searching))
                return false;
        } else if (child->type == EntryKind::Regular && !child->locked && allocated >= search.leastAllocatedSize) {
            searching.found.append({path, allocated, child->accessed, child->modified});
        }
    }
    return true;
}

} // namespace Quillmere
