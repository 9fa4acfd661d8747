#pragma once

#include "Platform/Linux/Disks/BlockDevices.h"
#include "Platform/Linux/Disks/DiskService.h"
#include "Tools/Caller.h"
#include "Tools/Disks/DeviceAccess.h"

#include <QSet>

#include <functional>

namespace Quillmere {

/// What it takes to erase a disk of a machine.
struct DiskTools
{
    DiskService service;
    BlockDevices devices;
    std::shared_ptr<const DeviceAccess> access;
    /// The devices that the running system needs.
    std::function<Result<QSet<quint64>>()> systemDevices;
    /// Gives a new volume of udisks2's type @p type to the user who asked for it. Empty where nobody is to be given it.
    std::function<Result<void>(const QByteArray &node, const QString &type)> giveToUser;
    /// Tells whoever watches what has been done.
    std::function<void(const QString &line)> say;

    /// For @p caller, who gets what is made and whose home is never erased. Where it cannot be told who that is,
    /// nothing is erased at all.
    [[nodiscard]] static DiskTools ofThisMachine(const Result<Caller> &caller);
};

} // namespace Quillmere
