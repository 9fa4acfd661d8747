#include "Platform/Linux/Tray/LinuxStatusItem.h"

#include "Platform/Linux/Tray/StatusItemIcon.h"

#include <QCursor>

namespace Quillmere {

LinuxStatusItem::LinuxStatusItem(const QDBusConnection &bus)
    : m_hosts(bus)
{
    connect(&m_hosts, &StatusNotifierHosts::changed, this, &LinuxStatusItem::followDesktop);
    connect(&m_tray, &SystemTraySelection::taken, this, &LinuxStatusItem::followDesktop);
    setTitle({}, ImagePosition::ImageOnly);
}

LinuxStatusItem::~LinuxStatusItem() = default;

void LinuxStatusItem::setTitle(const QString &title, ImagePosition)
{
    if (m_title == title)
        return;
    m_title = title;
    m_picture = statusItemIcon(title);
    if (m_icon)
        m_icon->setIcon(m_picture);
}

void LinuxStatusItem::setToolTip(const QString &text)
{
    if (m_toolTip == text)
        return;
    m_toolTip = text;
    if (m_icon)
        m_icon->setToolTip(text);
}

void LinuxStatusItem::setMenu(const QList<MenuEntry> &entries)
{
    m_menu.setEntries(entries);
}

void LinuxStatusItem::followDesktop()
{
    // Qt looks for status notifier panels once, when the first icon is made, and keeps the answer. So none is made
    // before there is somewhere to show it.
    switch (m_hosts.state()) {
    case StatusNotifierHosts::State::Unknown:
        return;
    case StatusNotifierHosts::State::Present:
        m_icon.reset();
        show();
        return;
    case StatusNotifierHosts::State::Absent:
        if (!m_tray.isOwned())
            m_icon.reset();
        else if (!m_icon)
            show();
        return;
    }
}

void LinuxStatusItem::show()
{
    m_icon = std::make_unique<QSystemTrayIcon>(m_picture);
    m_icon->setToolTip(m_toolTip);
    m_icon->setContextMenu(&m_menu.menu());
    connect(m_icon.get(), &QSystemTrayIcon::activated, this, &LinuxStatusItem::openMenu);
    m_icon->show();
}

void LinuxStatusItem::openMenu(QSystemTrayIcon::ActivationReason reason)
{
    if (reason == QSystemTrayIcon::Trigger)
        m_menu.menu().popup(QCursor::pos());
}

} // namespace Quillmere
