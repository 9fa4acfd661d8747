#pragma once

#include "Tools/Disks/DeviceAccess.h"

#include <QHash>

#include <functional>

namespace Quillmere {

/// What is on one pretended device, and what became of it.
struct PretendDevice
{
    DeviceFacts facts;
    QByteArray contents;
    bool isClaimed = false; ///< Somebody else has it.
    qint64 failsFrom = -1; ///< Writing fails from this byte on; never when negative.
    qint64 forgets = -1; ///< What is written to the block of this byte is lost; never when negative.
    int writes = 0;
    int partitionSearches = 0;
};

/// Devices in memory.
class PretendDevices final : public DeviceAccess
{
public:
    [[nodiscard]] Result<std::unique_ptr<OpenDevice>> open(const QByteArray &node, Way way) const override;

    mutable QHash<QByteArray, PretendDevice> devices; ///< By node.
    mutable QList<QByteArray> opened;
    std::function<void()> onWrite; ///< Called before each write.
};

} // namespace Quillmere
