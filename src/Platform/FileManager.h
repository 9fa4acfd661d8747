#pragma once

#include "Platform/EntryKind.h"
#include "Platform/FileSearch.h"
#include "Platform/OpenFolder.h"
#include "Values/Cancellation.h"
#include "Values/FilePath.h"
#include "Values/Result.h"

#include <QDateTime>
#include <QList>

#include <optional>

namespace Quillmere {

/// One thing that stands directly inside a folder.
struct DirectoryEntry
{
    FilePath path;
    EntryKind type = EntryKind::Other;

    bool operator==(const DirectoryEntry &) const = default;
};

/// What is known of one item, its own and not that of a link's target.
struct FileAttributes
{
    EntryKind type = EntryKind::Other;
    qint64 size = 0; ///< Logical length in bytes.
    qint64 allocatedSize = 0; ///< Bytes occupied on disk: a sparse file keeps below its length.
    QDateTime modified; ///< UTC.
    bool isOwnedByUser = true; ///< Belongs to the user the program runs as.

    bool operator==(const FileAttributes &) const = default;
};

/// The measure of a tree: regular files alone, each as often as it has a name.
struct TreeSize
{
    qint64 allocatedSize = 0; ///< Bytes occupied on disk.
    qint64 fileCount = 0;

    bool operator==(const TreeSize &) const = default;
    TreeSize &operator+=(const TreeSize &other)
    {
        allocatedSize += other.allocatedSize;
        fileCount += other.fileCount;
        return *this;
    }
};

/// What to learn of a volume's room.
enum class CapacityKey {
    Total = 1,
    AvailableForImportantUsage = 2, ///< What could be written once the system has cleared what it can do without.
    Available = 4, ///< What could be written as things are.
};
Q_DECLARE_FLAGS(CapacityKeys, CapacityKey)
Q_DECLARE_OPERATORS_FOR_FLAGS(CapacityKeys)

/// Bytes. Absent where it was not asked for, or the volume does not say.
struct VolumeCapacity
{
    std::optional<qint64> total;
    std::optional<qint64> availableForImportantUsage;
    std::optional<qint64> available;

    bool operator==(const VolumeCapacity &) const = default;
};

/// What a volume says of itself. Absent is what it, or the machine, does not say.
struct VolumeValues
{
    std::optional<QString> name; ///< How it is called.
    std::optional<bool> isRemovable;
    std::optional<bool> isInternal; ///< Part of the machine, and not something that is plugged into it.
    std::optional<bool> isReadOnly; ///< As it is mounted now.
    std::optional<bool> isWriteProtected = {}; ///< However it is mounted: its disk takes no changes.

    bool operator==(const VolumeValues &) const = default;
};

enum class HiddenFiles { Include, Skip };
enum class Intermediates { Create, MustExist };
enum class WriteMode {
    InPlace, ///< Overwrites, and cuts off what is left last: owner, mode and links stay; a failure may leave a part.
    /// Whoever looks, at whatever moment, finds the old contents or the new. Of a file that was there the mode and the
    /// extended attributes stay, and the owner where the user may give files away; a link is replaced.
    Atomic,
};

/// Everything the program asks of the file system. Safe to call from any thread.
class FileManager
{
public:
    virtual ~FileManager() = default;

    /// The current user's home, as the machine reports it. It may itself be a link.
    [[nodiscard]] virtual FilePath homeDirectory() const = 0;
    [[nodiscard]] virtual FilePath temporaryDirectory() const = 0;
    /// The user's Application Support folder; it need not exist.
    [[nodiscard]] virtual FilePath applicationSupportDirectory() const = 0;

    /// Lists what is directly inside @p folder, links not followed, without `.` and `..`, in the order in which
    /// the file system gives it. Fails with NotFound or NoPermission; an entry that vanishes meanwhile is left out.
    /// HiddenFiles::Skip leaves out names that begin with a point.
    [[nodiscard]] virtual Result<QList<DirectoryEntry>> contentsOfDirectory(const FilePath &folder,
                                                                            HiddenFiles hidden) const = 0;
    /// The folder at @p path, links above it followed. None for a link, for what is no folder, and for the mount point
    /// of a volume that might not answer.
    [[nodiscard]] virtual std::unique_ptr<OpenFolder> openFolder(const FilePath &path) const = 0;
    /// Whether something is mounted at @p path, which is free of links. Asks no volume.
    [[nodiscard]] virtual bool isMountPoint(const FilePath &path) const = 0;
    /// Whether what lies at @p path, links followed, can be asked for without waiting for a server or a program that
    /// has gone. Never holds the caller up for long. True also where there is nothing.
    [[nodiscard]] virtual bool isAnswering(const FilePath &path) const = 0;
    /// Adds up all regular files below @p folder, hidden ones and packages included. Symbolic links are not
    /// followed, @p folder itself included; other file systems mounted below are not entered. What cannot be read or
    /// vanishes meanwhile adds nothing. Zero for a file, a link or nothing at all. Fails with Cancelled alone, and only
    /// when something was left out: what is empty is zero, and what is finished its sum, even after a request to stop.
    [[nodiscard]] virtual Result<TreeSize> measureTree(const FilePath &folder,
                                                       const Cancellation &cancellation) const = 0;
    /// The regular files below @p folder that @p search is after, in the order of their paths: name by name from the
    /// top, by bytes. Neither listed nor entered nor counted is what is hidden, which is a name that begins with a
    /// point and nothing else. All else that is met counts as an item, folders and links too. Symbolic links are not
    /// followed, @p folder itself included; packages (PackageNames.h), closed folders and other file systems mounted
    /// below are not searched, of which closed folders alone have their direct entries counted. What cannot be read or
    /// vanishes meanwhile adds nothing. Nothing below a file, a link or nothing at all. Fails with Cancelled alone, as
    /// measureTree().
    [[nodiscard]] virtual Result<QList<FoundFile>> findFiles(const FilePath &folder, const FileSearch &search,
                                                             const Cancellation &cancellation) const = 0;

    /// Follows links: a dangling one does not exist.
    [[nodiscard]] virtual bool fileExists(const FilePath &path) const = 0;
    /// Of the item itself: a final link is not followed.
    [[nodiscard]] virtual Result<FileAttributes> attributesOfItem(const FilePath &path) const = 0;
    /// Follows links: the file itself may be run by the user.
    [[nodiscard]] virtual bool isExecutableFile(const FilePath &path) const = 0;
    /// Follows links: there is something, and the user may read it.
    [[nodiscard]] virtual bool isReadableFile(const FilePath &path) const = 0;
    /// Follows links: there is something, and the user may write into it.
    [[nodiscard]] virtual bool isWritableFile(const FilePath &path) const = 0;
    /// Of the volume that holds @p path. A volume that does not answer, such as one of a server that has gone, is a
    /// failure and never holds the caller up.
    [[nodiscard]] virtual Result<VolumeCapacity> capacityOfVolume(const FilePath &path, CapacityKeys keys) const = 0;
    /// Where the volumes are mounted that the user knows as such, each once, in the order of the system. Empty also
    /// where that cannot be learnt.
    [[nodiscard]] virtual QList<FilePath> mountedVolumes() const = 0;
    /// Of the volume mounted at @p mountPoint. Fails when none is, or it does not answer.
    [[nodiscard]] virtual Result<VolumeValues> valuesOfVolume(const FilePath &mountPoint) const = 0;
    /// Whether both lie in one file system, whose room they share. Links are followed. False when either does not
    /// exist.
    [[nodiscard]] virtual bool areOnSameVolume(const FilePath &one, const FilePath &other) const = 0;
    /// The location with every link resolved, standardized. All or nothing: if a component is missing or the links
    /// go round in a loop, only the text is tidied. A volume that might not answer is not asked: below its mount point
    /// the path is taken as written.
    [[nodiscard]] virtual FilePath resolvingSymlinks(const FilePath &path) const = 0;

    // No volume that does not answer holds up the following three: they fail with NotAnswering for an item that lies on
    // one, and for every item where the trash lies on one, since each removal has a look at that.

    /// Moves the item to a recoverable place and answers with its location there. A link moves itself, never its
    /// target. Fails rather than deletes; fails with LinkInPath when a folder above the item is a link.
    [[nodiscard]] virtual Result<FilePath> trashItem(const FilePath &path) const = 0;
    /// Deletes the item for good, folders with all that is in them: level by level, never through a link, never
    /// into another file system. A folder of ours that keeps its owner out, as some tools
    /// leave their caches, is opened up first. The first failure is reported; what stood beside it is deleted all the
    /// same.
    [[nodiscard]] virtual Result<void> removeItem(const FilePath &path) const = 0;
    /// The same for an item that nobody may meet by halves: under its name there is at any moment the whole of it or
    /// nothing, also where it fails or is ended. What is left of it then goes, if it can, with the next copy to the
    /// same place, which it is not in the way of.
    [[nodiscard]] virtual Result<void> removeItemAtOnce(const FilePath &path) const = 0;
    /// Copies the item with all that is in it to @p destination, whose folder must exist: links as links, rights, times
    /// and extended attributes as far as they can be given. AlreadyExists when anything stands there, NotSupported when
    /// it lies in the item itself. Stops at the first failure; what stands at @p destination is whole or nothing.
    [[nodiscard]] virtual Result<void> copyItem(const FilePath &source, const FilePath &destination) const = 0;
    /// Sees the volumes that hold @p paths, or did, safely onto disk, each once, but for those that do not answer.
    /// Waits for all that others have written there as well, however long that takes: for the end of a run, behind its
    /// record.
    virtual void synchronizeVolumes(const QList<FilePath> &paths) const = 0;

    /// How many small steps all that it does and has done took so far: items removed or moved to the trash, pieces
    /// copied, folders read. As long as one of its calls goes forward, this grows, but while one waits for a volume to
    /// have all written down. Any thread.
    [[nodiscard]] virtual quint64 stepsTaken() const = 0;

    /// An existing folder is fine with Intermediates::Create, and AlreadyExists otherwise.
    [[nodiscard]] virtual Result<void> createDirectory(const FilePath &folder, Intermediates intermediates) const = 0;
    /// Follows links. Never waits: what is not a regular file is a failure.
    [[nodiscard]] virtual Result<QByteArray> contentsOfFile(const FilePath &path) const = 0;
    /// The same of a file that somebody else may have put there: one that holds more than @p mostBytes is Malformed,
    /// and is not read.
    [[nodiscard]] virtual Result<QByteArray> contentsOfFile(const FilePath &path, qsizetype mostBytes) const = 0;
    [[nodiscard]] virtual Result<void> writeFile(const FilePath &path, const QByteArray &contents,
                                                 WriteMode mode) const = 0;
};

} // namespace Quillmere
