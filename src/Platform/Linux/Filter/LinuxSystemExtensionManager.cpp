#include "Platform/Linux/Filter/LinuxSystemExtensionManager.h"

#include "Platform/Linux/Filter/FilterActivation.h"

namespace Quillmere {

namespace {

const QString trafficFilter = u"com.veltrane.quillmere.traffic-filter"_qs;

} // namespace

LinuxSystemExtensionManager::LinuxSystemExtensionManager(const QDBusConnection &bus)
    : m_bus(bus)
{
}

void LinuxSystemExtensionManager::submitActivation(const QString &identifier, SystemExtensionRequestDelegate &delegate)
{
    if (identifier == trafficFilter) {
        new FilterActivation(m_bus, delegate, &m_requests);
        return;
    }
    const QString description = u"This system knows no extension named %1."_qs.arg(identifier);
    QMetaObject::invokeMethod(
        &m_requests, [&delegate, description] { delegate.requestDidFail(description); }, Qt::QueuedConnection);
}

} // namespace Quillmere
