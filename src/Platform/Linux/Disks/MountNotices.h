#pragma once

#include "Platform/Linux/Disks/MountMemory.h"
#include "Platform/Linux/Files/FileDescriptor.h"

#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace Quillmere {

/// Tells of each volume when it is mounted, as long as MountMemory does not know it. One that is mounted at several
/// places is told of once, and those that are there from the beginning are not. GUI thread only.
class MountNotices final : public QObject
{
    Q_OBJECT

public:
    explicit MountNotices(std::function<void(const FilePath &)> mounted, BlockDevices devices = BlockDevices());

private:
    void look();
    [[nodiscard]] QByteArray table();

    std::function<void(const FilePath &)> m_mounted;
    MountMemory m_memory;
    FileDescriptor m_file; ///< The kernel's table, which wakes whoever waits on it at each change.
    std::unique_ptr<QSocketNotifier> m_changes;
};

} // namespace Quillmere
