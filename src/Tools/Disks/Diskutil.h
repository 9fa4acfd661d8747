#pragma once

#include "Platform/Linux/Disks/DiskService.h"
#include "Platform/Linux/Disks/Mount.h"
#include "Tools/Disks/DiskCatalogue.h"
#include "Tools/Disks/ListedDisks.h"
#include "Tools/ToolEnd.h"

#include <functional>

namespace Quillmere {

/// The command `diskutil`, as far as it is used:
///     info PLACE|VOLUME
///     mount VOLUME
///     unmount PLACE|VOLUME
/// What a volume is when `info` tells of it is kept, so that nothing else is erased under its name later. What has come
/// to its place since then is told of under another name.
class Diskutil final
{
public:
    /// @p mounts gives the machine's table of mounts, @p say takes the lines that the command prints.
    Diskutil(DiskService service, BlockDevices devices, ListedDisks listed, std::function<QList<MountEntry>()> mounts,
             std::function<void(const QString &line)> say);

    [[nodiscard]] ToolEnd run(const QStringList &arguments) const;

private:
    /// What @p argument stands for, and all disks that there are.
    struct Target
    {
        DiskCatalogue catalogue;
        DiskIdentity volume;
    };

    [[nodiscard]] Result<Target> find(const QString &argument) const;
    [[nodiscard]] std::optional<quint64> mountedAt(const FilePath &place) const;
    /// What was shown under @p name, as long as it is still that; or what would be shown under it.
    [[nodiscard]] std::optional<DiskIdentity> named(const DiskCatalogue &catalogue, const DiskName &name) const;
    [[nodiscard]] ToolEnd info(const Target &target) const;
    [[nodiscard]] ToolEnd mount(const Target &target) const;
    [[nodiscard]] ToolEnd unmount(const Target &target) const;

    DiskService m_service;
    BlockDevices m_devices;
    ListedDisks m_listed;
    std::function<QList<MountEntry>()> m_mounts;
    std::function<void(const QString &line)> m_say;
};

} // namespace Quillmere
