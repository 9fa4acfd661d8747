#include "Fakes/PretendFileManager.h"

#include "Fakes/PretendFailure.h"

namespace Quillmere {

PretendFileManager::PretendFileManager(const FilePath &home)
    : m_home(home)
{
    addFolder(home);
}

FilePath PretendFileManager::homeDirectory() const
{
    ++m_questionsForTheHome;
    return m_home;
}

FilePath PretendFileManager::temporaryDirectory() const
{
    return m_temporary;
}

FilePath PretendFileManager::applicationSupportDirectory() const
{
    return m_home.isEmpty() ? FilePath() : m_home.appending("Library/Application Support");
}

Result<QList<DirectoryEntry>> PretendFileManager::contentsOfDirectory(const FilePath &folder, HiddenFiles hidden) const
{
    const std::scoped_lock guard(m_mutex);
    noteIfHeldUp(folder);
    const std::optional<FilePath> resolved = m_tree.resolve(folder);
    const PretendNode *node = resolved ? m_tree.find(*resolved) : nullptr;
    if (!node || node->type != EntryKind::Directory)
        return pretendedFailure(Failure::Kind::NotFound, folder);
    if (node->locked)
        return pretendedFailure(Failure::Kind::NoPermission, folder);

    QList<DirectoryEntry> entries;
    for (const QByteArray &name : node->children) {
        if (hidden == HiddenFiles::Skip && name.startsWith('.'))
            continue;
        entries.append({folder.appending(name), m_tree.find(resolved->appending(name))->type});
    }
    return entries;
}

bool PretendFileManager::fileExists(const FilePath &path) const
{
    const std::scoped_lock guard(m_mutex);
    noteIfHeldUp(path);
    return m_tree.resolve(path).has_value();
}

Result<FileAttributes> PretendFileManager::attributesOfItem(const FilePath &path) const
{
    const std::scoped_lock guard(m_mutex);
    noteIfHeldUp(path);
    const std::optional<FilePath> parent = m_tree.resolve(path.deletingLastPathComponent());
    const PretendNode *node = parent ? m_tree.find(parent->appending(path.lastPathComponent())) : nullptr;
    if (!node)
        return pretendedFailure(Failure::Kind::NotFound, path);
    FileAttributes attributes;
    attributes.type = node->type;
    attributes.size = node->type == EntryKind::Regular ? node->bytes : 0;
    attributes.allocatedSize = node->allocated.value_or(attributes.size);
    attributes.isOwnedByUser = node->ownedByUser;
    return attributes;
}

bool PretendFileManager::isExecutableFile(const FilePath &path) const
{
    const std::scoped_lock lock(m_mutex);
    noteIfHeldUp(path);
    const std::optional<FilePath> resolved = m_tree.resolve(path);
    const PretendNode *node = resolved ? m_tree.find(*resolved) : nullptr;
    return node && node->executable;
}

bool PretendFileManager::isReadableFile(const FilePath &path) const
{
    const std::scoped_lock lock(m_mutex);
    const std::optional<FilePath> resolved = m_tree.resolve(path);
    const PretendNode *node = resolved ? m_tree.find(*resolved) : nullptr;
    return node && !node->locked;
}

bool PretendFileManager::isWritableFile(const FilePath &path) const
{
    const std::scoped_lock lock(m_mutex);
    const std::optional<FilePath> resolved = m_tree.resolve(path);
    const PretendNode *node = resolved ? m_tree.find(*resolved) : nullptr;
    return node && !node->refusal;
}

Result<VolumeCapacity> PretendFileManager::capacityOfVolume(const FilePath &path, CapacityKeys keys) const
{
    const std::scoped_lock lock(m_mutex);
    m_capacityRequests.append(keys);
    const auto found = m_capacityByKeys.find(keys.toInt());
    Result<VolumeCapacity> answer = found == m_capacityByKeys.end() ? m_capacity : found->second;
    if (const std::optional<PretendVolume> volume = m_disks->mountedAt(path))
        answer = volume->capacity;
    if (!answer)
        return answer;
    VolumeCapacity &capacity = answer.value();
    if (!keys.testFlag(CapacityKey::Total))
        capacity.total.reset();
    if (!keys.testFlag(CapacityKey::AvailableForImportantUsage))
        capacity.availableForImportantUsage.reset();
    if (!keys.testFlag(CapacityKey::Available))
        capacity.available.reset();
    return answer;
}

QList<FilePath> PretendFileManager::mountedVolumes() const
{
    return m_disks->mountPoints();
}

Result<VolumeValues> PretendFileManager::valuesOfVolume(const FilePath &mountPoint) const
{
    const std::optional<PretendVolume> volume = m_disks->mountedAt(mountPoint);
    return volume ? volume->values : pretendedFailure(Failure::Kind::NotFound, mountPoint);
}

bool PretendFileManager::areOnSameVolume(const FilePath &one, const FilePath &other) const
{
    const std::scoped_lock guard(m_mutex);
    const std::optional<FilePath> first = m_tree.resolve(one);
    const std::optional<FilePath> second = m_tree.resolve(other);
    return first && second && m_tree.volumeOf(*first) == m_tree.volumeOf(*second);
}

FilePath PretendFileManager::resolvingSymlinks(const FilePath &path) const
{
    const std::scoped_lock guard(m_mutex);
    return m_tree.resolve(path).value_or(path.standardized());
}

Result<FilePath> PretendFileManager::trashItem(const FilePath &path) const
{
    if (m_onRemoval)
        m_onRemoval(path);
    const std::scoped_lock guard(m_mutex);
    const Result<PretendNode *> found = findRemovable(path);
    if (!found)
        return found.failure();
    const FilePath destination
        = m_home.appending(".Trash").appending(QByteArray::number(m_trashed.size()) + ' ' + path.lastPathComponent());
    PretendNode moved = *found.value();
    moved.children.clear();
    m_tree.detach(path);
    m_tree.insert(destination, moved);
    m_trashed.append(path);
    ++m_steps;
    return destination;
}

Result<void> PretendFileManager::removeItem(const FilePath &path) const
{
    if (m_onRemoval)
        m_onRemoval(path);
    const std::scoped_lock guard(m_mutex);
    const Result<PretendNode *> found = findRemovable(path);
    if (!found)
        return found.failure();
    m_tree.detach(path);
    m_removed.append(path);
    ++m_steps;
    return {};
}

Result<PretendNode *> PretendFileManager::findRemovable(const FilePath &path) const
{
    if (m_silentVolumes.contains(m_tree.volumeOf(m_tree.placeOf(path))))
        return pretendedFailure(Failure::Kind::NotAnswering, path);
    return m_tree.findRemovable(path);
}

Result<void> PretendFileManager::removeItemAtOnce(const FilePath &path) const
{
    return removeItem(path);
}

quint64 PretendFileManager::stepsTaken() const
{
    return m_steps;
}

Result<void> PretendFileManager::copyItem(const FilePath &source, const FilePath &destination) const
{
    const std::scoped_lock guard(m_mutex);
    const FilePath from = m_tree.placeOf(source);
    const FilePath to = m_tree.placeOf(destination);
    const PretendNode *folder = m_tree.find(to.deletingLastPathComponent());
    if (!m_tree.find(from) || !folder)
        return pretendedFailure(Failure::Kind::NotFound, m_tree.find(from) ? destination : source);
    if (m_tree.find(to))
        return pretendedFailure(Failure::Kind::AlreadyExists, destination);
    if (to.isWithin(from))
        return pretendedFailure(Failure::Kind::NotSupported, destination);
    if (folder->refusal)
        return pretendedFailure(*folder->refusal, destination);
    const auto copied = m_tree.within(from);
    for (const auto &[path, node] : copied) {
        if (node.locked) {
            m_tree.detach(to);
            return pretendedFailure(Failure::Kind::NoPermission, path);
        }
        PretendNode copy = node;
        copy.children.clear();
        m_tree.insert(to.appending(path.bytes().sliced(from.bytes().size())), copy);
    }
    return {};
}

void PretendFileManager::synchronizeVolumes(const QList<FilePath> &paths) const
{
    if (m_onSynchronization)
        m_onSynchronization(paths);
    const std::scoped_lock guard(m_mutex);
    ++m_synchronizations;
}

Result<void> PretendFileManager::createDirectory(const FilePath &path, Intermediates intermediates) const
{
    const std::scoped_lock guard(m_mutex);
    const FilePath folder = m_tree.placeOf(path);
    if (const PretendNode *existing = m_tree.find(folder)) {
        if (existing->type == EntryKind::Directory && intermediates == Intermediates::Create)
            return {};
        return pretendedFailure(Failure::Kind::AlreadyExists, folder);
    }
    FilePath ancestor = folder.deletingLastPathComponent();
    if (!m_tree.find(ancestor) && intermediates == Intermediates::MustExist)
        return pretendedFailure(Failure::Kind::NotFound, folder);
    while (!m_tree.find(ancestor))
        ancestor = ancestor.deletingLastPathComponent();
    if (const auto refusal = m_tree.find(ancestor)->refusal)
        return pretendedFailure(*refusal, folder);
    m_tree.insert(folder, {});
    return {};
}

Result<QByteArray> PretendFileManager::contentsOfFile(const FilePath &path) const
{
    const std::scoped_lock guard(m_mutex);
    noteIfHeldUp(path);
    const std::optional<FilePath> resolved = m_tree.resolve(path);
    const PretendNode *node = resolved ? m_tree.find(*resolved) : nullptr;
    if (!node || node->type != EntryKind::Regular)
        return pretendedFailure(Failure::Kind::NotFound, path);
    if (node->locked)
        return pretendedFailure(Failure::Kind::NoPermission, path);
    return node->contents;
}

Result<QByteArray> PretendFileManager::contentsOfFile(const FilePath &path, qsizetype mostBytes) const
{
    const Result<QByteArray> contents = contentsOfFile(path);
    if (contents && contents.value().size() > mostBytes)
        return pretendedFailure(Failure::Kind::Malformed, path);
    return contents;
}

Result<void> PretendFileManager::writeFile(const FilePath &path, const QByteArray &contents, WriteMode mode) const
{
    const std::scoped_lock guard(m_mutex);
    const FilePath target
        = mode == WriteMode::InPlace ? m_tree.resolve(path).value_or(m_tree.placeOf(path)) : m_tree.placeOf(path);
    const PretendNode *parent = m_tree.find(target.deletingLastPathComponent());
    if (!parent)
        return pretendedFailure(Failure::Kind::NotFound, path);
    const PretendNode *existing = m_tree.find(target);
    for (const PretendNode *node : {parent, existing}) {
        if (node && node->refusal)
            return pretendedFailure(*node->refusal, path);
    }
    PretendNode file;
    file.type = EntryKind::Regular;
    file.bytes = contents.size();
    file.contents = contents;
    m_tree.insert(target, file);
    return {};
}

} // namespace Quillmere
