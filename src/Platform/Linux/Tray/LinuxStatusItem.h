#pragma once

#include "Platform/Linux/Tray/StatusItemMenu.h"
#include "Platform/Linux/Tray/StatusNotifierHosts.h"
#include "Platform/Linux/Tray/SystemTraySelection.h"
#include "Platform/StatusItem.h"

#include <QIcon>
#include <QSystemTrayIcon>

#include <memory>
#include <optional>

namespace Quillmere {

/// In a panel that speaks of status notifiers, else in an X11 system tray, as soon as there is one.
class LinuxStatusItem final : public QObject, public StatusItem
{
    Q_OBJECT

public:
    explicit LinuxStatusItem(const QDBusConnection &bus);
    ~LinuxStatusItem() override;

    void setTitle(const QString &title, ImagePosition position) override;
    void setToolTip(const QString &text) override;
    void setMenu(const QList<MenuEntry> &entries) override;

    /// It stands in a panel or a tray, as far as is known.
    [[nodiscard]] bool isShown() const { return m_icon != nullptr; }

private:
    void followDesktop();
    void show();
    void openMenu(QSystemTrayIcon::ActivationReason reason);

    StatusNotifierHosts m_hosts;
    SystemTraySelection m_tray;
    std::optional<QString> m_title; ///< Nothing until one was set.
    QIcon m_picture;
    QString m_toolTip;
    StatusItemMenu m_menu;
    std::unique_ptr<QSystemTrayIcon> m_icon;
};

} // namespace Quillmere
