#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QList>

namespace Quillmere {

/// One network interface as /proc/net/dev lists it.
struct NetworkDevice
{
    QByteArray name;
    bool hasData = false; ///< False for one that keeps no counters, or none that can be read.
    quint64 received = 0; ///< Bytes.
    quint64 sent = 0; ///< Bytes.

    bool operator==(const NetworkDevice &) const = default;
};

/// In the order of the text.
[[nodiscard]] QList<NetworkDevice> parseNetworkDevices(QByteArrayView text);

} // namespace Quillmere
