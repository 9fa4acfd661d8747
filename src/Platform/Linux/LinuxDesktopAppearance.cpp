#include "Platform/Linux/LinuxDesktopAppearance.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QGuiApplication>
#include <QPalette>

#include <utility>

namespace Quillmere {

namespace {

const QString service = u"org.freedesktop.portal.Desktop"_qs;
const QString object = u"/org/freedesktop/portal/desktop"_qs;
const QString interface = u"org.freedesktop.portal.Settings"_qs;

const QString appearanceGroup = u"org.freedesktop.appearance"_qs;
const QString schemeKey = u"color-scheme"_qs;
const QString desktopGroup = u"org.gnome.desktop.interface"_qs;
const QString animationsKey = u"enable-animations"_qs;

// The portal's answers for color-scheme: 0 no preference, 1 dark, 2 light.
constexpr uint preferDark = 1;
constexpr int answerMilliseconds = 5000;

ColorScheme schemeWithoutPortal(const QByteArray &gtkTheme)
{
    if (!gtkTheme.isEmpty())
        return gtkTheme.endsWith(":dark") || gtkTheme.endsWith("-dark") ? ColorScheme::Dark : ColorScheme::Light;
    const int lightness = QGuiApplication::palette().color(QPalette::Window).lightness();
    return lightness < 128 ? ColorScheme::Dark : ColorScheme::Light;
}

/// The portal's older call wraps its answer twice.
QVariant unwrapped(QVariant value)
{
    while (value.metaType() == QMetaType::fromType<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

} // namespace

LinuxDesktopAppearance::LinuxDesktopAppearance(const QDBusConnection &bus, const QByteArray &gtkTheme)
    : m_bus(bus)
    , m_scheme(schemeWithoutPortal(gtkTheme))
{
    if (!m_bus.isConnected())
        return;
    // QtDBus registers the type with the first message it reads; the connection below is made before that.
    qRegisterMetaType<QDBusVariant>();
    m_bus.connect(service, object, interface, u"SettingChanged"_qs, this,
                  SLOT(takeSetting(QString, QString, QDBusVariant)));
    ask(appearanceGroup, schemeKey);
    ask(desktopGroup, animationsKey);
}

void LinuxDesktopAppearance::observe(std::function<void()> changed)
{
    m_changed = std::move(changed);
}

void LinuxDesktopAppearance::takeSetting(const QString &group, const QString &key, const QDBusVariant &value)
{
    const QVariant setting = unwrapped(QVariant::fromValue(value));
    const auto before = std::pair(m_scheme, m_reducedMotion);
    if (group == appearanceGroup && key == schemeKey)
        m_scheme = setting.toUInt() == preferDark ? ColorScheme::Dark : ColorScheme::Light;
    else if (group == desktopGroup && key == animationsKey && setting.metaType() == QMetaType::fromType<bool>())
        m_reducedMotion = !setting.toBool();
    if (m_changed && before != std::pair(m_scheme, m_reducedMotion))
        m_changed();
}

void LinuxDesktopAppearance::ask(const QString &group, const QString &key)
{
    QDBusMessage question = QDBusMessage::createMethodCall(service, object, interface, u"Read"_qs);
    question << group << key;
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(question, answerMilliseconds), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, group, key, watcher] {
        const QDBusPendingReply<QDBusVariant> answer = *watcher;
        if (!answer.isError())
            takeSetting(group, key, answer.value());
        watcher->deleteLater();
    });
}

} // namespace Quillmere
