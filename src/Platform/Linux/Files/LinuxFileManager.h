#pragma once

#include "Platform/FileManager.h"
#include "Platform/Linux/Disks/MountedVolumes.h"
#include "Platform/Linux/Files/VolumeGuard.h"
#include "Platform/Linux/Programs/UserEnvironment.h"
#include "Platform/Linux/Removal/RemovalGuard.h"
#include "Platform/Linux/Removal/TrashCan.h"

namespace Quillmere {

/// The file system of this machine.
class LinuxFileManager final : public FileManager
{
public:
    /// @p patience is how long a volume has for its answer before it is passed over.
    explicit LinuxFileManager(UserEnvironment environment = UserEnvironment::current(),
                              std::chrono::milliseconds patience = VolumeGuard::usualPatience);

    [[nodiscard]] FilePath homeDirectory() const override;
    [[nodiscard]] FilePath temporaryDirectory() const override;
    [[nodiscard]] FilePath applicationSupportDirectory() const override;
    [[nodiscard]] Result<QList<DirectoryEntry>> contentsOfDirectory(const FilePath &folder,
                                                                    HiddenFiles hidden) const override;
    [[nodiscard]] std::unique_ptr<OpenFolder> openFolder(const FilePath &path) const override;
    [[nodiscard]] bool isMountPoint(const FilePath &path) const override;
    [[nodiscard]] bool isAnswering(const FilePath &path) const override;
    [[nodiscard]] Result<TreeSize> measureTree(const FilePath &folder, const Cancellation &cancellation) const override;
    [[nodiscard]] Result<QList<FoundFile>> findFiles(const FilePath &folder, const FileSearch &search,
                                                     const Cancellation &cancellation) const override;
    [[nodiscard]] bool fileExists(const FilePath &path) const override;
    [[nodiscard]] Result<FileAttributes> attributesOfItem(const FilePath &path) const override;
    [[nodiscard]] bool isExecutableFile(const FilePath &path) const override;
    [[nodiscard]] bool isReadableFile(const FilePath &path) const override;
    [[nodiscard]] bool isWritableFile(const FilePath &path) const override;
    [[nodiscard]] Result<VolumeCapacity> capacityOfVolume(const FilePath &path, CapacityKeys keys) const override;
    [[nodiscard]] QList<FilePath> mountedVolumes() const override;
    [[nodiscard]] Result<VolumeValues> valuesOfVolume(const FilePath &mountPoint) const override;
    [[nodiscard]] bool areOnSameVolume(const FilePath &one, const FilePath &other) const override;
    [[nodiscard]] FilePath resolvingSymlinks(const FilePath &path) const override;
    [[nodiscard]] Result<FilePath> trashItem(const FilePath &path) const override;
    [[nodiscard]] Result<void> removeItem(const FilePath &path) const override;
    [[nodiscard]] Result<void> removeItemAtOnce(const FilePath &path) const override;
    [[nodiscard]] Result<void> copyItem(const FilePath &source, const FilePath &destination) const override;
    void synchronizeVolumes(const QList<FilePath> &paths) const override;
    [[nodiscard]] quint64 stepsTaken() const override;
    [[nodiscard]] Result<void> createDirectory(const FilePath &folder, Intermediates intermediates) const override;
    [[nodiscard]] Result<QByteArray> contentsOfFile(const FilePath &path) const override;
    [[nodiscard]] Result<QByteArray> contentsOfFile(const FilePath &path, qsizetype mostBytes) const override;
    [[nodiscard]] Result<void> writeFile(const FilePath &path, const QByteArray &contents,
                                         WriteMode mode) const override;

private:
    /// Whether the item and the home trash can be asked for all that a removal asks of them; else NotAnswering.
    [[nodiscard]] Result<void> areAnsweringForRemoval(const FilePath &path) const;

    UserEnvironment m_environment;
    VolumeGuard m_volumeGuard;
    RemovalGuard m_guard;
    TrashCan m_trashCan;
    MountedVolumes m_volumes;
};

} // namespace Quillmere
