// How a test makes this disk, and what it learns of it.
#include "Fakes/PretendFileManager.h"

namespace Quillmere {

void PretendFileManager::addFolder(const FilePath &path)
{
    const std::scoped_lock guard(m_mutex);
    if (!m_tree.find(path))
        m_tree.insert(path, {});
}

void PretendFileManager::addFile(const FilePath &path, qint64 bytes, const QByteArray &contents)
{
    const std::scoped_lock guard(m_mutex);
    PretendNode node;
    node.type = EntryKind::Regular;
    node.bytes = bytes;
    node.contents = contents;
    m_tree.insert(path, node);
}

void PretendFileManager::addSparseFile(const FilePath &path, qint64 length, qint64 allocated)
{
    addFile(path, length);
    const std::scoped_lock guard(m_mutex);
    m_tree.find(path)->allocated = allocated;
}

void PretendFileManager::setTimes(const FilePath &path, const std::optional<QDateTime> &accessed,
                                  const std::optional<QDateTime> &modified)
{
    const std::scoped_lock guard(m_mutex);
    PretendNode *node = m_tree.find(path);
    node->accessed = accessed;
    node->modified = modified;
}

void PretendFileManager::addLink(const FilePath &path, const FilePath &target)
{
    const std::scoped_lock guard(m_mutex);
    PretendNode node;
    node.type = EntryKind::SymbolicLink;
    node.target = target;
    m_tree.insert(path, node);
}

void PretendFileManager::addSocket(const FilePath &path)
{
    const std::scoped_lock guard(m_mutex);
    PretendNode node;
    node.type = EntryKind::Other;
    m_tree.insert(path, node);
}

void PretendFileManager::giveAway(const FilePath &path)
{
    const std::scoped_lock guard(m_mutex);
    m_tree.find(path)->ownedByUser = false;
}

void PretendFileManager::lock(const FilePath &path)
{
    const std::scoped_lock guard(m_mutex);
    m_tree.find(path)->locked = true;
}

void PretendFileManager::refuse(const FilePath &path, Failure::Kind kind)
{
    const std::scoped_lock guard(m_mutex);
    m_tree.find(path)->refusal = kind;
}

void PretendFileManager::addVolume(const FilePath &path)
{
    addFolder(path);
    const std::scoped_lock guard(m_mutex);
    m_tree.addVolume(path);
}

void PretendFileManager::makeExecutable(const FilePath &path)
{
    const std::scoped_lock lock(m_mutex);
    if (PretendNode *node = m_tree.find(path))
        node->executable = true;
}

void PretendFileManager::setCapacity(const Result<VolumeCapacity> &capacity)
{
    const std::scoped_lock lock(m_mutex);
    m_capacity = capacity;
}

void PretendFileManager::setCapacity(CapacityKeys keys, const Result<VolumeCapacity> &capacity)
{
    const std::scoped_lock lock(m_mutex);
    m_capacityByKeys.insert_or_assign(keys.toInt(), capacity);
}

QList<CapacityKeys> PretendFileManager::capacityRequests() const
{
    const std::scoped_lock lock(m_mutex);
    return m_capacityRequests;
}

void PretendFileManager::setTemporaryDirectory(const FilePath &path)
{
    m_temporary = path;
}

void PretendFileManager::setHome(const FilePath &path)
{
    m_home = path;
}

void PretendFileManager::vanish(const FilePath &path)
{
    const std::scoped_lock guard(m_mutex);
    m_tree.detach(path);
}

void PretendFileManager::onMeasure(std::function<void(const FilePath &)> observer)
{
    m_onMeasure = std::move(observer);
}

void PretendFileManager::onRemoval(std::function<void(const FilePath &)> observer)
{
    m_onRemoval = std::move(observer);
}

void PretendFileManager::onSynchronization(std::function<void(const QList<FilePath> &)> observer)
{
    m_onSynchronization = std::move(observer);
}

bool PretendFileManager::contains(const FilePath &path) const
{
    const std::scoped_lock guard(m_mutex);
    return m_tree.find(path) != nullptr;
}

QList<FilePath> PretendFileManager::trashed() const
{
    const std::scoped_lock guard(m_mutex);
    return m_trashed;
}

QList<FilePath> PretendFileManager::removed() const
{
    const std::scoped_lock guard(m_mutex);
    return m_removed;
}

int PretendFileManager::synchronizations() const
{
    const std::scoped_lock guard(m_mutex);
    return m_synchronizations;
}

} // namespace Quillmere
