#include "Platform/Linux/Files/LinuxFileManager.h"

#include "Platform/Linux/Disks/KnownMounts.h"
#include "Platform/Linux/Files/DiskSteps.h"
#include "Platform/Linux/Files/ErrnoFailure.h"
#include "Platform/Linux/Files/FileReading.h"
#include "Platform/Linux/Files/FileReplacement.h"
#include "Platform/Linux/Files/FileWriting.h"
#include "Platform/Linux/Files/FolderListing.h"
#include "Platform/Linux/Files/FolderOnDisk.h"
#include "Platform/Linux/Files/FolderOpening.h"
#include "Platform/Linux/Files/ItemPlace.h"
#include "Platform/Linux/Files/OpenAt.h"
#include "Platform/Linux/Files/StatFields.h"
#include "Platform/Linux/Removal/ItemCopy.h"
#include "Platform/Linux/Removal/ItemRemoval.h"
#include "Platform/Linux/Walk/TreeWalk.h"

#include <QSet>

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Quillmere {

namespace {

constexpr mode_t allRights = 0777;

QDateTime timeOf(const timespec &time)
{
    return QDateTime::fromMSecsSinceEpoch(time.tv_sec * 1000LL + time.tv_nsec / 1'000'000, Qt::UTC);
}

bool leadsToFolder(const FilePath &path)
{
    return openFolder(path, LinksAbove::Follow, O_PATH).isOk();
}

/// The folder at @p path or the nearest above it that can be opened: whatever volume the item was on, this is on.
FileDescriptor openNearest(FilePath path)
{
    for (;;) {
        Result<FileDescriptor> folder = openFolder(path, LinksAbove::Follow, O_RDONLY);
        if (folder)
            return std::move(folder).value();
        const FilePath above = path.deletingLastPathComponent();
        if (above == path)
            return {};
        path = above;
    }
}

} // namespace

LinuxFileManager::LinuxFileManager(UserEnvironment environment, std::chrono::milliseconds patience)
    : m_environment(std::move(environment))
    , m_volumeGuard(m_environment.home, patience)
    , m_guard(m_environment)
    , m_trashCan(m_environment)
{
}

FilePath LinuxFileManager::homeDirectory() const
{
    return m_environment.home;
}

FilePath LinuxFileManager::temporaryDirectory() const
{
    return m_environment.temporary;
}

FilePath LinuxFileManager::applicationSupportDirectory() const
{
    return m_environment.home.appending("Library/Application Support");
}

Result<QList<DirectoryEntry>> LinuxFileManager::contentsOfDirectory(const FilePath &folder, HiddenFiles hidden) const
{
    return Quillmere::contentsOfDirectory(folder, hidden);
}

std::unique_ptr<OpenFolder> LinuxFileManager::openFolder(const FilePath &path) const
{
    const Result<ItemPlace> place = ItemPlace::open(path, LinksAbove::Follow);
    if (!place)
        return nullptr;
    std::unique_ptr<OpenFolder> folder = FolderOnDisk::below(place.value().folder.number(), place.value().name);
    if (folder || errno != EXDEV || !m_volumeGuard.mayEnter(m_volumeGuard.placeOf(path)))
        return folder;
    FileDescriptor top = openFolderForReading(path, FinalLink::Refuse);
    return top.isOpen() ? std::make_unique<FolderOnDisk>(std::move(top)) : nullptr;
}

bool LinuxFileManager::isMountPoint(const FilePath &path) const
{
    const QList<MountEntry> mounts = knownMounts();
    return std::ranges::find(mounts, path.standardized(), &MountEntry::location) != mounts.end();
}

bool LinuxFileManager::isAnswering(const FilePath &path) const
{
    return m_volumeGuard.isAnswering(path);
}

Result<TreeSize> LinuxFileManager::measureTree(const FilePath &folder, const Cancellation &cancellation) const
{
    if (!m_volumeGuard.isItemAnswering(folder))
        return TreeSize();
    return Quillmere::measureTree(folder, cancellation);
}

Result<QList<FoundFile>> LinuxFileManager::findFiles(const FilePath &folder, const FileSearch &search,
                                                     const Cancellation &cancellation) const
{
    if (!m_volumeGuard.isItemAnswering(folder))
        return QList<FoundFile>();
    return Quillmere::findFiles(folder, search, cancellation);
}

bool LinuxFileManager::fileExists(const FilePath &path) const
{
    const Result<ItemPlace> place = ItemPlace::open(path, LinksAbove::Follow);
    struct stat status = {};
    return place && ::fstatat(place.value().folder.number(), place.value().name.constData(), &status, 0) == 0;
}

Result<FileAttributes> LinuxFileManager::attributesOfItem(const FilePath &path) const
{
    const Result<ItemPlace> place = ItemPlace::open(path, LinksAbove::Follow);
    if (!place)
        return place.failure();
    struct stat status = {};
    if (::fstatat(place.value().folder.number(), place.value().name.constData(), &status,
                  AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT)
        != 0)
        return failureFromErrno(errno, path);
    return FileAttributes{kindOfMode(status.st_mode), status.st_size, status.st_blocks * bytesPerBlock,
                          timeOf(status.st_mtim), status.st_uid == m_environment.user};
}

bool LinuxFileManager::isExecutableFile(const FilePath &path) const
{
    struct stat status;
    return ::stat(path.bytes().constData(), &status) == 0 && S_ISREG(status.st_mode)
        && ::faccessat(AT_FDCWD, path.bytes().constData(), X_OK, AT_EACCESS) == 0;
}

bool LinuxFileManager::isReadableFile(const FilePath &path) const
{
    return ::faccessat(AT_FDCWD, path.bytes().constData(), R_OK, AT_EACCESS) == 0;
}

bool LinuxFileManager::isWritableFile(const FilePath &path) const
{
    return ::faccessat(AT_FDCWD, path.bytes().constData(), W_OK, AT_EACCESS) == 0;
}

Result<VolumeCapacity> LinuxFileManager::capacityOfVolume(const FilePath &path, CapacityKeys keys) const
{
    return m_volumeGuard.capacity(path, keys);
}

QList<FilePath> LinuxFileManager::mountedVolumes() const
{
    return m_volumes.places(DiskService::toShow());
}

Result<VolumeValues> LinuxFileManager::valuesOfVolume(const FilePath &mountPoint) const
{
    return m_volumes.values(mountPoint, DiskService::toShow());
}

bool LinuxFileManager::areOnSameVolume(const FilePath &one, const FilePath &other) const
{
    const auto first = m_volumeGuard.resolve(one);
    const auto second = m_volumeGuard.resolve(other);
    if (!first || !second)
        return false;
    const QList<MountEntry> table = knownMounts();
    const auto firstMount = mountThatHolds(*first, table);
    const auto secondMount = mountThatHolds(*second, table);
    return firstMount && secondMount && firstMount->device == secondMount->device;
}

FilePath LinuxFileManager::resolvingSymlinks(const FilePath &path) const
{
    return m_volumeGuard.resolved(path);
}

Result<FilePath> LinuxFileManager::trashItem(const FilePath &path) const
{
    if (const Result<void> answers = areAnsweringForRemoval(path); !answers)
        return answers.failure();
    return m_trashCan.trash(path);
}

Result<void> LinuxFileManager::removeItem(const FilePath &path) const
{
    const Result<void> answers = areAnsweringForRemoval(path);
    return answers ? Quillmere::removeItem(path, m_guard) : answers;
}

Result<void> LinuxFileManager::removeItemAtOnce(const FilePath &path) const
{
    const Result<void> answers = areAnsweringForRemoval(path);
    return answers ? Quillmere::removeItemAtOnce(path, m_guard) : answers;
}

Result<void> LinuxFileManager::areAnsweringForRemoval(const FilePath &path) const
{
    const FilePath trash = m_environment.homeTrash();
    const bool isItemAnswering = m_volumeGuard.isItemAnswering(path);
    if (isItemAnswering && m_volumeGuard.isAnswering(trash))
        return {};
    return Failure{Failure::Kind::NotAnswering, isItemAnswering ? trash : path, u"The volume does not answer"_qs};
}

Result<void> LinuxFileManager::copyItem(const FilePath &source, const FilePath &destination) const
{
    return Quillmere::copyItem(source, destination);
}

void LinuxFileManager::synchronizeVolumes(const QList<FilePath> &paths) const
{
    QSet<dev_t> synchronized;
    for (const FilePath &path : paths) {
        if (!m_volumeGuard.isItemAnswering(path))
            continue;
        const FileDescriptor folder = openNearest(path.deletingLastPathComponent());
        struct stat status = {};
        if (!folder.isOpen() || ::fstat(folder.number(), &status) != 0 || synchronized.contains(status.st_dev))
            continue;
        synchronized.insert(status.st_dev);
        ::syncfs(folder.number());
    }
}

quint64 LinuxFileManager::stepsTaken() const
{
    return DiskSteps::taken();
}

Result<void> LinuxFileManager::createDirectory(const FilePath &folder, Intermediates intermediates) const
{
    const bool withParents = intermediates == Intermediates::Create;
    const FilePath parent = folder.deletingLastPathComponent();
    if (withParents && parent != folder && !leadsToFolder(parent)) {
        if (const Result<void> made = createDirectory(parent, intermediates); !made)
            return made;
    }
    const Result<ItemPlace> place = ItemPlace::open(folder, LinksAbove::Follow);
    if (!place)
        return place.failure();
    if (::mkdirat(place.value().folder.number(), place.value().name.constData(), allRights) == 0)
        return {};
    const int error = errno;
    if (error == EEXIST && withParents && leadsToFolder(folder))
        return {};
    return failureFromErrno(error, folder);
}

Result<QByteArray> LinuxFileManager::contentsOfFile(const FilePath &path) const
{
    return readFile(path);
}

Result<QByteArray> LinuxFileManager::contentsOfFile(const FilePath &path, qsizetype mostBytes) const
{
    return readBounded(path, mostBytes);
}

Result<void> LinuxFileManager::writeFile(const FilePath &path, const QByteArray &contents, WriteMode mode) const
{
    return mode == WriteMode::Atomic ? replaceFile(path, contents) : writeInPlace(path, contents);
}

} // namespace Quillmere
