#pragma once

#include "Fakes/PretendDisks.h"
#include "Fakes/PretendTree.h"

#include <atomic>
#include <functional>
#include <map>
#include <mutex>

namespace Quillmere {

/// Where the user lives unless a test says otherwise.
inline const FilePath pretendHome("/home/ada");

/// A disk that exists only in memory. It starts with a root and the user's home; what is not added is not there.
/// Folders list their children in the order in which they were added. Safe to call from any thread.
class PretendFileManager final : public FileManager
{
public:
    explicit PretendFileManager(const FilePath &home = pretendHome);

    // Building the world. Missing parents are made.
    void addFolder(const FilePath &path);
    void addFile(const FilePath &path, qint64 bytes, const QByteArray &contents = {});
    /// A file as long as @p length that occupies but @p allocated bytes.
    void addSparseFile(const FilePath &path, qint64 length, qint64 allocated);
    /// When its contents were last read and changed; none where the file system does not say.
    void setTimes(const FilePath &path, const std::optional<QDateTime> &accessed,
                  const std::optional<QDateTime> &modified);
    void addLink(const FilePath &path, const FilePath &target);
    void addSocket(const FilePath &path);
    void giveAway(const FilePath &path); ///< From now on it belongs to another user.
    void lock(const FilePath &path); ///< From now on it may not be read.
    void refuse(const FilePath &path, Failure::Kind kind); ///< From now on it may not be trashed, removed or written.
    void setTemporaryDirectory(const FilePath &path);
    /// The machine reports it so; nothing is made there. Empty: it has no folders for the user.
    void setHome(const FilePath &path);
    void makeExecutable(const FilePath &path);
    void addVolume(const FilePath &path); ///< From now on another file system begins there.
    /// What every volume answers from now on, whatever is asked.
    void setCapacity(const Result<VolumeCapacity> &capacity);
    /// The same as long as @p keys are asked for, all of them and no others.
    void setCapacity(CapacityKeys keys, const Result<VolumeCapacity> &capacity);
    /// What is plugged into the machine. A volume of it has the capacity of its own.
    [[nodiscard]] PretendDisks &disks() const { return *m_disks; }
    void fallSilent(const FilePath &volume); ///< From now on the volume that begins there answers nobody.
    /// What was asked of volumes that answer nobody, and would have kept whoever asked for ever.
    [[nodiscard]] QList<FilePath> heldUp() const;
    void takeStep() { ++m_steps; } ///< As if a call under way had gone forward. Each item that goes is a step too.
    void vanish(const FilePath &path); ///< Takes it away as another program would.

    /// Called before each entry of a measured or searched tree, with its location: the place to cancel from, or to
    /// change things.
    void onMeasure(std::function<void(const FilePath &)> observer);
    /// Called before each entry that is shown of a folder held open, with its location.
    void onLook(std::function<void(const FilePath &)> observer);
    /// Called before an item is trashed or removed, with its location, on the working thread.
    void onRemoval(std::function<void(const FilePath &)> observer);

    /// Called before volumes are seen onto disk, with what they hold, on the working thread.
    void onSynchronization(std::function<void(const QList<FilePath> &)> observer);

    [[nodiscard]] bool contains(const FilePath &path) const; ///< The thing itself, a dangling link too.
    [[nodiscard]] QList<FilePath> trashed() const; ///< Where trashed items came from, in their order.
    [[nodiscard]] QList<FilePath> removed() const; ///< What was deleted for good, in its order.
    [[nodiscard]] int synchronizations() const;
    [[nodiscard]] int questionsForTheHome() const { return m_questionsForTheHome; }
    [[nodiscard]] QList<CapacityKeys> capacityRequests() const; ///< What was asked for, in its order.

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
    void noteIfHeldUp(const FilePath &path) const; ///< Locked once by the caller.
    /// Locked once by the caller. NotAnswering on a volume that answers nobody, of which nothing is asked.
    [[nodiscard]] Result<PretendNode *> findRemovable(const FilePath &path) const;
    class Unlocked;
    class OpenedFolder;
    /// Locked once by the caller. False when it was stopped.
    bool measure(const FilePath &folder, TreeSize &size, const Cancellation &cancellation) const;
    struct Searching;
    bool search(const FilePath &folder, Searching &searching) const;

    FilePath m_home;
    FilePath m_temporary = FilePath("/tmp");
    std::shared_ptr<PretendDisks> m_disks = std::make_shared<PretendDisks>();
    mutable std::recursive_mutex m_mutex;
    mutable PretendTree m_tree;
    QSet<FilePath> m_silentVolumes;
    mutable QList<FilePath> m_heldUp;
    mutable QList<FilePath> m_trashed;
    mutable QList<FilePath> m_removed;
    mutable int m_synchronizations = 0;
    mutable std::atomic<quint64> m_steps = 0;
    mutable std::atomic<int> m_questionsForTheHome = 0;
    Result<VolumeCapacity> m_capacity = VolumeCapacity{500'000'000'000, 300'000'000'000, 300'000'000'000};
    std::map<int, Result<VolumeCapacity>> m_capacityByKeys;
    mutable QList<CapacityKeys> m_capacityRequests;
    std::function<void(const FilePath &)> m_onMeasure;
    std::function<void(const FilePath &)> m_onRemoval;
    std::function<void(const FilePath &)> m_onLook;
    std::function<void(const QList<FilePath> &)> m_onSynchronization;
};

} // namespace Quillmere
