// Looking through folders of this disk that are held open, and at what is mounted on it.
#include "Fakes/PretendFileManager.h"

namespace Quillmere {

class PretendFileManager::OpenedFolder final : public OpenFolder
{
public:
    OpenedFolder(const PretendFileManager &disk, FilePath path)
        : m_disk(disk)
        , m_path(std::move(path))
    {
    }

    [[nodiscard]] bool holds(const QByteArray &name) const override { return m_disk.contains(m_path.appending(name)); }
    [[nodiscard]] std::unique_ptr<OpenFolder> enter(const QByteArray &name) const override
    {
        const FilePath below = m_path.appending(name);
        return m_disk.isMountPoint(below) ? nullptr : m_disk.openFolder(below);
    }
    void forEach(const Take &take) override
    {
        for (const DirectoryEntry &entry : m_disk.contentsOfDirectory(m_path, HiddenFiles::Include).valueOr({})) {
            if (m_disk.m_onLook)
                m_disk.m_onLook(entry.path);
            if (!take(entry.path.lastPathComponent(), entry.type))
                return;
        }
    }

private:
    const PretendFileManager &m_disk;
    const FilePath m_path;
};

std::unique_ptr<OpenFolder> PretendFileManager::openFolder(const FilePath &path) const
{
    const std::scoped_lock guard(m_mutex);
    const FilePath place = m_tree.placeOf(path);
    const PretendNode *node = m_tree.find(place);
    const bool isFolder = node && node->type == EntryKind::Directory && !m_silentVolumes.contains(place);
    return isFolder ? std::make_unique<OpenedFolder>(*this, place) : nullptr;
}

bool PretendFileManager::isMountPoint(const FilePath &path) const
{
    const std::scoped_lock guard(m_mutex);
    return m_tree.isVolume(path);
}

bool PretendFileManager::isAnswering(const FilePath &path) const
{
    const std::scoped_lock guard(m_mutex);
    return !m_silentVolumes.contains(m_tree.volumeOf(m_tree.resolve(path).value_or(m_tree.placeOf(path))));
}

void PretendFileManager::fallSilent(const FilePath &volume)
{
    const std::scoped_lock guard(m_mutex);
    m_silentVolumes.insert(volume);
}

QList<FilePath> PretendFileManager::heldUp() const
{
    const std::scoped_lock guard(m_mutex);
    return m_heldUp;
}

void PretendFileManager::noteIfHeldUp(const FilePath &path) const
{
    if (!m_silentVolumes.isEmpty() && !isAnswering(path))
        m_heldUp.append(path);
}

void PretendFileManager::onLook(std::function<void(const FilePath &)> observer)
{
    m_onLook = std::move(observer);
}

} // namespace Quillmere
