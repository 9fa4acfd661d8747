#include "Platform/Linux/System/NetworkDevices.h"

#include "Platform/Linux/System/ProcText.h"

namespace Quillmere {

namespace {

constexpr qsizetype receivedColumn = 0;
constexpr qsizetype sentColumn = 8;

} // namespace

QList<NetworkDevice> parseNetworkDevices(QByteArrayView text)
{
    QList<NetworkDevice> devices;
    for (const QByteArrayView line : wholeLines(text)) {
        // The number may follow at once: old kernels leave no blank before a long one. The two lines of headings
        // have no colon.
        const qsizetype colon = line.lastIndexOf(':');
        const QByteArrayView name = line.first(std::max<qsizetype>(colon, 0)).trimmed();
        if (name.isEmpty())
            continue;
        NetworkDevice device{name.toByteArray()};
        const QList<QByteArrayView> fields = fieldsOf(line.sliced(colon + 1));
        const auto received = wholeNumber(fields.value(receivedColumn));
        const auto sent = wholeNumber(fields.value(sentColumn));
        if (received && sent) {
            device.hasData = true;
            device.received = *received;
            device.sent = *sent;
        }
        devices.append(device);
    }
    return devices;
}

} // namespace Quillmere
