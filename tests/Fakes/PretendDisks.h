#pragma once

#include "Platform/FileManager.h"
#include "Platform/ProcessRunner.h"

#include <QStringList>

#include <mutex>

namespace Quillmere {

/// A volume on a disk that is plugged into a pretend machine.
struct PretendVolume
{
    FilePath mountPoint; ///< Where it is mounted, or was last.
    QString device; ///< Such as disk4s2. Empty: the system's disk command says nothing of it.
    QString fileSystem; ///< What that command says of it, such as NTFS. Empty: nothing.
    Result<VolumeValues> values = VolumeValues{};
    VolumeCapacity capacity;
    bool isMounted = true;
};

/// The disks that are plugged into a pretend machine, and what the system's disk command makes of them. Safe to call
/// from any thread.
class PretendDisks
{
public:
    void plugIn(const PretendVolume &volume);
    void pullOut(const FilePath &mountPoint);

    [[nodiscard]] QList<PretendVolume> volumes() const; ///< In the order in which they were plugged in.
    [[nodiscard]] QList<FilePath> mountPoints() const; ///< Of those that are mounted.
    /// Nothing is mounted there: nothing.
    [[nodiscard]] std::optional<PretendVolume> mountedAt(const FilePath &mountPoint) const;

    /// Carries out the disk command with @p arguments. Erasing needs @p isAdministrator, and
    /// a disk that is plugged in.
    [[nodiscard]] ProcessOutcome diskutil(const QStringList &arguments, bool isAdministrator);

private:
    [[nodiscard]] ProcessOutcome info(const QString &place);
    [[nodiscard]] ProcessOutcome setMounted(const QString &place, bool isMounted);
    [[nodiscard]] ProcessOutcome eraseVolume(const QString &format, const QString &name, const QString &device);
    [[nodiscard]] ProcessOutcome secureErase(const QString &disk);
    /// By its mount point or its device, with or without /dev/. Null when there is none.
    [[nodiscard]] PretendVolume *find(const QString &place);

    mutable std::mutex m_mutex;
    QList<PretendVolume> m_volumes;
};

} // namespace Quillmere
