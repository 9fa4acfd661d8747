#pragma once

#include "Tools/Disks/DeviceAccess.h"

namespace Quillmere {

/// The devices of this machine.
class LinuxDeviceAccess final : public DeviceAccess
{
public:
    [[nodiscard]] Result<std::unique_ptr<OpenDevice>> open(const QByteArray &node, Way way) const override;
};

} // namespace Quillmere
