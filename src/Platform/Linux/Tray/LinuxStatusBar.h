#pragma once

#include "Platform/StatusItem.h"

#include <QDBusConnection>

namespace Quillmere {

/// The status area of the desktop's panel. Needs a QApplication.
class LinuxStatusBar final : public StatusBar
{
public:
    explicit LinuxStatusBar(const QDBusConnection &bus = QDBusConnection::sessionBus());

    [[nodiscard]] std::unique_ptr<StatusItem> makeStatusItem() override;

private:
    QDBusConnection m_bus;
};

} // namespace Quillmere
