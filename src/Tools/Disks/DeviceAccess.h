#pragma once

#include "Values/Result.h"

#include <QByteArray>

#include <memory>

namespace Quillmere {

/// What an open device says of itself, at the moment when it is asked.
struct DeviceFacts
{
    quint64 number = 0; ///< dev_t.
    qint64 size = 0; ///< Bytes.
    quint64 sequence = 0; ///< The kernel's number of the disk. 0 where it gives none.
    bool isReadOnly = false;

    bool operator==(const DeviceFacts &) const = default;
};

/// A device that was opened. As long as it is, the kernel gives its number and its name to no other.
class OpenDevice
{
public:
    virtual ~OpenDevice() = default;

    [[nodiscard]] virtual Result<DeviceFacts> facts() const = 0;
    /// Writes @p count bytes of zeros at @p offset, past all caches. Both are multiples of the device's own blocks.
    [[nodiscard]] virtual Result<void> writeZeros(qint64 offset, qint64 count) = 0;
    /// The same for reading: what the device itself has.
    [[nodiscard]] virtual Result<QByteArray> read(qint64 offset, qint64 count) = 0;
    /// Waits until all that was written is on the device.
    [[nodiscard]] virtual Result<void> synchronize() = 0;
    /// Lets the kernel look for partitions anew.
    virtual void lookForPartitions() = 0;
};

/// Opens devices.
class DeviceAccess
{
public:
    enum class Way {
        Look, ///< For questions alone, whoever uses it.
        Alone, ///< For writing. Fails with Busy while anything of it is mounted or otherwise in use, by anybody.
    };

    virtual ~DeviceAccess() = default;

    /// @p node the kernel's name. Never waits, and never follows a link.
    [[nodiscard]] virtual Result<std::unique_ptr<OpenDevice>> open(const QByteArray &node, Way way) const = 0;
};

} // namespace Quillmere
