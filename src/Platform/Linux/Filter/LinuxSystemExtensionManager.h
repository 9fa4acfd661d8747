#pragma once

#include "Platform/SystemExtensionManager.h"

#include <QDBusConnection>
#include <QObject>

namespace Quillmere {

/// Knows one extension, the traffic filter, and activates it as FilterActivation says. The user's refusal counts as an
/// approval that is still to come.
class LinuxSystemExtensionManager final : public SystemExtensionManager
{
public:
    explicit LinuxSystemExtensionManager(const QDBusConnection &bus = QDBusConnection::systemBus());

    void submitActivation(const QString &identifier, SystemExtensionRequestDelegate &delegate) override;

private:
    QDBusConnection m_bus;
    QObject m_requests; ///< Owns those that are open.
};

} // namespace Quillmere
