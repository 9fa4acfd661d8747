#pragma once

#include "Platform/Linux/FileDescriptor.h"
#include "Platform/Linux/MountedVolumes.h"

#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace Quillmere {

/// Tells of each volume when it is mounted for the first time since its disk came. One that is mounted at several
/// places is told of once; one that was mounted before, and is mounted anew, is no news. GUI thread only.
class MountNotices final : public QObject
{
    Q_OBJECT

public:
    explicit MountNotices(std::function<void(const FilePath &)> mounted, BlockDevices devices = BlockDevices());

private:
    void look();
    [[nodiscard]] QByteArray table();

    std::function<void(const FilePath &)> m_mounted;
    BlockDevices m_devices;
    FileDescriptor m_file; ///< The kernel's table, which wakes whoever waits on it at each change.
    std::unique_ptr<QSocketNotifier> m_changes;
    QSet<std::pair<quint64, quint64>> m_known; ///< Device and disk of what was told of, or was there before.
};

} // namespace Quillmere
