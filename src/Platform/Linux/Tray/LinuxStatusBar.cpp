#include "Platform/Linux/Tray/LinuxStatusBar.h"

#include "Platform/Linux/Tray/LinuxStatusItem.h"

namespace Quillmere {

LinuxStatusBar::LinuxStatusBar(const QDBusConnection &bus)
    : m_bus(bus)
{
}

std::unique_ptr<StatusItem> LinuxStatusBar::makeStatusItem()
{
    return std::make_unique<LinuxStatusItem>(m_bus);
}

} // namespace Quillmere
