#pragma once

#include "Platform/FileManager.h"
#include "Platform/ProcessRunner.h"
#include "Platform/Workspace.h"
#include "Utilities/DiskDriverHelper.h"
#include "Values/SharedInstance.h"

#include <memory>

namespace Quillmere {

/// Makes FAT, exFAT and NTFS disks usable as they come, and asks the system about disks. Nothing that fails here is
/// shown to the user. It remembers no disk: one that comes up again is handled again. GUI thread only, but for the two
/// queries.
class DiskMountService final
{
public:
    DiskMountService(std::shared_ptr<Workspace> workspace, std::shared_ptr<const FileManager> files,
                     std::shared_ptr<const Places> places, std::shared_ptr<const ProcessRunner> processes);
    /// What is under way goes on to its end.
    ~DiskMountService();
    Q_DISABLE_COPY_MOVE(DiskMountService)

    [[nodiscard]] static DiskMountService &shared() { return SharedInstance<DiskMountService>::get(); }

    /// From the first call on, disks are handled: those that are there, one after the other, and each that comes. Does
    /// not wait for any.
    void start();
    void handleVolumeMounted(const MountNotification &notification);

    /// The device identifier of the volume mounted at @p path, such as disk4s2. Empty when the system does not say. Any
    /// thread; waits for a program.
    [[nodiscard]] QString getBSDName(const FilePath &path) const;
    /// "ntfs", "msdos" for FAT and exFAT, or empty for all else. Any thread; waits for a program.
    [[nodiscard]] QString getFilesystemType(const FilePath &path) const;

private:
    class Mounting;

    std::shared_ptr<Workspace> m_workspace;
    std::shared_ptr<const Mounting> m_mounting;
    bool m_isStarted = false;
};

} // namespace Quillmere
