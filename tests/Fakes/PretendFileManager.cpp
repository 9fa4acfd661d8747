#include "Fakes/PretendFileManager.h"

#include "Platform/PackageNames.h"

#include <algorithm>

namespace Quillmere {

namespace {

// The kernel gives up after 40 links; more is a loop.
constexpr int mostLinksFollowed = 40;

Failure failure(Failure::Kind kind, const FilePath &path)
{
    return {kind, path, u"pretended"_qs};
}

} // namespace

PretendFileManager::PretendFileManager(const FilePath &home)
    : m_home(home)
{
    m_nodes["/"] = Node{};
    addFolder(home);
}

void PretendFileManager::addFolder(const FilePath &path)
{
    const std::scoped_lock guard(m_mutex);
    if (!find(path))
        insert(path, {});
}

void PretendFileManager::addFile(const FilePath &path, qint64 bytes, const QByteArray &contents)
{
    const std::scoped_lock guard(m_mutex);
    Node node;
    node.type = EntryKind::Regular;
    node.bytes = bytes;
    node.contents = contents;
    insert(path, node);
}

void PretendFileManager::addSparseFile(const FilePath &path, qint64 length, qint64 allocated)
{
    addFile(path, length);
    const std::scoped_lock guard(m_mutex);
    find(path)->allocated = allocated;
}

void PretendFileManager::setTimes(const FilePath &path, const std::optional<QDateTime> &accessed,
                                  const std::optional<QDateTime> &modified)
{
    const std::scoped_lock guard(m_mutex);
    Node *node = find(path);
    node->accessed = accessed;
    node->modified = modified;
}

void PretendFileManager::addLink(const FilePath &path, const FilePath &target)
{
    const std::scoped_lock guard(m_mutex);
    Node node;
    node.type = EntryKind::SymbolicLink;
    node.target = target;
    insert(path, node);
}

void PretendFileManager::addSocket(const FilePath &path)
{
    const std::scoped_lock guard(m_mutex);
    Node node;
    node.type = EntryKind::Other;
    insert(path, node);
}

void PretendFileManager::giveAway(const FilePath &path)
{
    const std::scoped_lock guard(m_mutex);
    find(path)->ownedByUser = false;
}

void PretendFileManager::lock(const FilePath &path)
{
    const std::scoped_lock guard(m_mutex);
    find(path)->locked = true;
}

void PretendFileManager::refuse(const FilePath &path, Failure::Kind kind)
{
    const std::scoped_lock guard(m_mutex);
    find(path)->refusal = kind;
}

void PretendFileManager::addVolume(const FilePath &path)
{
    addFolder(path);
    const std::scoped_lock guard(m_mutex);
    m_volumes.insert(path);
}

void PretendFileManager::makeExecutable(const FilePath &path)
{
    const std::scoped_lock lock(m_mutex);
    if (Node *node = find(path))
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

void PretendFileManager::vanish(const FilePath &path)
{
    const std::scoped_lock guard(m_mutex);
    detach(path);
}

void PretendFileManager::onMeasure(std::function<void(const FilePath &)> observer)
{
    m_onMeasure = std::move(observer);
}

void PretendFileManager::onRemoval(std::function<void(const FilePath &)> observer)
{
    m_onRemoval = std::move(observer);
}

bool PretendFileManager::contains(const FilePath &path) const
{
    const std::scoped_lock guard(m_mutex);
    return find(path) != nullptr;
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

FilePath PretendFileManager::homeDirectory() const
{
    return m_home;
}

FilePath PretendFileManager::temporaryDirectory() const
{
    return m_temporary;
}

FilePath PretendFileManager::applicationSupportDirectory() const
{
    return m_home.appending("Library/Application Support");
}

Result<QList<DirectoryEntry>> PretendFileManager::contentsOfDirectory(const FilePath &folder, HiddenFiles hidden) const
{
    const std::scoped_lock guard(m_mutex);
    const std::optional<FilePath> resolved = resolve(folder);
    const Node *node = resolved ? find(*resolved) : nullptr;
    if (!node || node->type != EntryKind::Directory)
        return failure(Failure::Kind::NotFound, folder);
    if (node->locked)
        return failure(Failure::Kind::NoPermission, folder);

    QList<DirectoryEntry> entries;
    for (const QByteArray &name : node->children) {
        if (hidden == HiddenFiles::Skip && name.startsWith('.'))
            continue;
        entries.append({folder.appending(name), find(resolved->appending(name))->type});
    }
    return entries;
}

Result<TreeSize> PretendFileManager::measureTree(const FilePath &folder, const Cancellation &cancellation) const
{
    const std::scoped_lock guard(m_mutex);
    TreeSize size;
    bool wasStopped = false;
    const Node *node = find(folder);
    if (node && node->type == EntryKind::Directory)
        wasStopped = !measure(folder.standardized(), size, cancellation);
    if (wasStopped)
        return failure(Failure::Kind::Cancelled, folder);
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
    const Node *node = find(folder);
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
        const Node *child = find(path);
        if (!child || (child->type == EntryKind::Regular && child->locked))
            continue;
        if (m_volumes.contains(path))
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
    const Node *node = find(folder);
    if (node && node->type == EntryKind::Directory && !this->search(folder.standardized(), searching))
        return failure(Failure::Kind::Cancelled, folder);
    std::ranges::sort(searching.found, {}, [](const FoundFile &file) { return file.path.bytes().split('/'); });
    return searching.found;
}

bool PretendFileManager::search(const FilePath &folder, Searching &searching) const
{
    const Node *node = find(folder);
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
        const Node *child = find(path);
        if (isClosed || !child)
            continue;
        const qint64 allocated = child->allocated.value_or(child->bytes);
        if (m_volumes.contains(path))
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

bool PretendFileManager::fileExists(const FilePath &path) const
{
    const std::scoped_lock guard(m_mutex);
    return resolve(path).has_value();
}

Result<FileAttributes> PretendFileManager::attributesOfItem(const FilePath &path) const
{
    const std::scoped_lock guard(m_mutex);
    const std::optional<FilePath> parent = resolve(path.deletingLastPathComponent());
    const Node *node = parent ? find(parent->appending(path.lastPathComponent())) : nullptr;
    if (!node)
        return failure(Failure::Kind::NotFound, path);
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
    const std::optional<FilePath> resolved = resolve(path);
    const Node *node = resolved ? find(*resolved) : nullptr;
    return node && node->executable;
}

bool PretendFileManager::isReadableFile(const FilePath &path) const
{
    const std::scoped_lock lock(m_mutex);
    const std::optional<FilePath> resolved = resolve(path);
    const Node *node = resolved ? find(*resolved) : nullptr;
    return node && !node->locked;
}

bool PretendFileManager::isWritableFile(const FilePath &path) const
{
    const std::scoped_lock lock(m_mutex);
    const std::optional<FilePath> resolved = resolve(path);
    const Node *node = resolved ? find(*resolved) : nullptr;
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
    return volume ? volume->values : failure(Failure::Kind::NotFound, mountPoint);
}

bool PretendFileManager::areOnSameVolume(const FilePath &one, const FilePath &other) const
{
    const std::scoped_lock guard(m_mutex);
    const std::optional<FilePath> first = resolve(one);
    const std::optional<FilePath> second = resolve(other);
    return first && second && volumeOf(*first) == volumeOf(*second);
}

FilePath PretendFileManager::volumeOf(const FilePath &path) const
{
    FilePath folder = path;
    while (!m_volumes.contains(folder))
        folder = folder.deletingLastPathComponent();
    return folder;
}

FilePath PretendFileManager::resolvingSymlinks(const FilePath &path) const
{
    const std::scoped_lock guard(m_mutex);
    return resolve(path).value_or(path.standardized());
}

Result<FilePath> PretendFileManager::trashItem(const FilePath &path) const
{
    if (m_onRemoval)
        m_onRemoval(path);
    const std::scoped_lock guard(m_mutex);
    const Result<Node *> found = findRemovable(path);
    if (!found)
        return found.failure();
    const FilePath destination
        = m_home.appending(".Trash").appending(QByteArray::number(m_trashed.size()) + ' ' + path.lastPathComponent());
    Node moved = *found.value();
    moved.children.clear();
    detach(path);
    insert(destination, moved);
    m_trashed.append(path);
    return destination;
}

Result<void> PretendFileManager::removeItem(const FilePath &path) const
{
    if (m_onRemoval)
        m_onRemoval(path);
    const std::scoped_lock guard(m_mutex);
    const Result<Node *> found = findRemovable(path);
    if (!found)
        return found.failure();
    detach(path);
    m_removed.append(path);
    return {};
}

Result<void> PretendFileManager::copyItem(const FilePath &source, const FilePath &destination) const
{
    const std::scoped_lock guard(m_mutex);
    const FilePath from = placeOf(source);
    const FilePath to = placeOf(destination);
    const Node *folder = find(to.deletingLastPathComponent());
    if (!find(from) || !folder)
        return failure(Failure::Kind::NotFound, find(from) ? destination : source);
    if (find(to))
        return failure(Failure::Kind::AlreadyExists, destination);
    if (to.isWithin(from))
        return failure(Failure::Kind::NotSupported, destination);
    if (folder->refusal)
        return failure(*folder->refusal, destination);
    const std::map<QByteArray, Node> nodes = m_nodes;
    for (const auto &[bytes, node] : nodes) {
        if (!FilePath(bytes).isWithin(from))
            continue;
        if (node.locked) {
            detach(to);
            return failure(Failure::Kind::NoPermission, FilePath(bytes));
        }
        Node copy = node;
        copy.children.clear();
        insert(to.appending(bytes.sliced(from.bytes().size())), copy);
    }
    return {};
}

void PretendFileManager::synchronizeVolumes(const QList<FilePath> &) const
{
    const std::scoped_lock guard(m_mutex);
    ++m_synchronizations;
}

Result<void> PretendFileManager::createDirectory(const FilePath &path, Intermediates intermediates) const
{
    const std::scoped_lock guard(m_mutex);
    const FilePath folder = placeOf(path);
    if (const Node *existing = find(folder)) {
        if (existing->type == EntryKind::Directory && intermediates == Intermediates::Create)
            return {};
        return failure(Failure::Kind::AlreadyExists, folder);
    }
    FilePath ancestor = folder.deletingLastPathComponent();
    if (!find(ancestor) && intermediates == Intermediates::MustExist)
        return failure(Failure::Kind::NotFound, folder);
    while (!find(ancestor))
        ancestor = ancestor.deletingLastPathComponent();
    if (const auto refusal = find(ancestor)->refusal)
        return failure(*refusal, folder);
    insert(folder, {});
    return {};
}

Result<QByteArray> PretendFileManager::contentsOfFile(const FilePath &path) const
{
    const std::scoped_lock guard(m_mutex);
    const std::optional<FilePath> resolved = resolve(path);
    const Node *node = resolved ? find(*resolved) : nullptr;
    if (!node || node->type != EntryKind::Regular)
        return failure(Failure::Kind::NotFound, path);
    if (node->locked)
        return failure(Failure::Kind::NoPermission, path);
    return node->contents;
}

Result<QByteArray> PretendFileManager::contentsOfFile(const FilePath &path, qsizetype mostBytes) const
{
    const Result<QByteArray> contents = contentsOfFile(path);
    if (contents && contents.value().size() > mostBytes)
        return failure(Failure::Kind::Malformed, path);
    return contents;
}

Result<void> PretendFileManager::writeFile(const FilePath &path, const QByteArray &contents, WriteMode mode) const
{
    const std::scoped_lock guard(m_mutex);
    const FilePath target = mode == WriteMode::InPlace ? resolve(path).value_or(placeOf(path)) : placeOf(path);
    const Node *parent = find(target.deletingLastPathComponent());
    if (!parent)
        return failure(Failure::Kind::NotFound, path);
    const Node *existing = find(target);
    for (const Node *node : {parent, existing}) {
        if (node && node->refusal)
            return failure(*node->refusal, path);
    }
    Node file;
    file.type = EntryKind::Regular;
    file.bytes = contents.size();
    file.contents = contents;
    insert(target, file);
    return {};
}

PretendFileManager::Node *PretendFileManager::find(const FilePath &path) const
{
    const auto found = m_nodes.find(path.standardized().bytes());
    return found == m_nodes.end() ? nullptr : &found->second;
}

PretendFileManager::Node &PretendFileManager::insert(const FilePath &path, Node node) const
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

void PretendFileManager::detach(const FilePath &path) const
{
    const FilePath place = path.standardized();
    if (Node *parent = find(place.deletingLastPathComponent()))
        parent->children.removeOne(place.lastPathComponent());
    std::erase_if(m_nodes, [&](const auto &entry) { return FilePath(entry.first).isWithin(place); });
}

std::optional<FilePath> PretendFileManager::resolve(const FilePath &path) const
{
    QList<QByteArray> waiting = path.standardized().bytes().split('/');
    FilePath reached("/");
    int links = 0;
    while (!waiting.isEmpty()) {
        const QByteArray name = waiting.takeFirst();
        if (name.isEmpty())
            continue;
        const FilePath next = reached.appending(name).standardized();
        const Node *node = find(next);
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

FilePath PretendFileManager::placeOf(const FilePath &path) const
{
    const FilePath parent = path.standardized().deletingLastPathComponent();
    const std::optional<FilePath> resolved = resolve(parent);
    const FilePath folder = resolved || parent == path ? resolved.value_or(parent) : placeOf(parent);
    return folder.appending(path.standardized().lastPathComponent());
}

Result<PretendFileManager::Node *> PretendFileManager::findRemovable(const FilePath &path) const
{
    const FilePath parent = path.standardized().deletingLastPathComponent();
    const std::optional<FilePath> resolvedParent = resolve(parent);
    if (resolvedParent && *resolvedParent != parent)
        return failure(Failure::Kind::LinkInPath, path);
    Node *node = find(path);
    if (!node)
        return failure(Failure::Kind::NotFound, path);
    if (node->refusal)
        return failure(*node->refusal, path);
    return node;
}

} // namespace Quillmere
