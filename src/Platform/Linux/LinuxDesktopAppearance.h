#pragma once

#include "Platform/DesktopAppearance.h"

#include <QDBusConnection>
#include <QDBusVariant>
#include <QObject>

namespace Quillmere {

/// Asks the desktop portal, and listens to it. The question is answered later or never; until then, and where there is
/// no bus or no portal, a dark GTK theme named in the environment or a dark palette makes the scheme dark, and motion
/// is not reduced.
class LinuxDesktopAppearance final : public QObject, public DesktopAppearance
{
    Q_OBJECT

public:
    /// @p gtkTheme is the theme's name with its variant behind a colon, such as "Adwaita:dark"; may be empty.
    explicit LinuxDesktopAppearance(const QDBusConnection &bus = QDBusConnection::sessionBus(),
                                    const QByteArray &gtkTheme = qgetenv("GTK_THEME"));

    [[nodiscard]] ColorScheme colorScheme() const override { return m_scheme; }
    [[nodiscard]] bool prefersReducedMotion() const override { return m_reducedMotion; }
    void observe(std::function<void()> changed) override;

private Q_SLOTS:
    void takeSetting(const QString &group, const QString &key, const QDBusVariant &value);

private:
    void ask(const QString &group, const QString &key);

    QDBusConnection m_bus;
    ColorScheme m_scheme;
    bool m_reducedMotion = false;
    std::function<void()> m_changed;
};

} // namespace Quillmere
