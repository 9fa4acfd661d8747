#include "Platform/Linux/Desktop/LinuxDesktopAppearance.h"

#include <QDBusMessage>
#include <QDBusPendingReply>
#include <QDeadlineTimer>
#include <QEvent>
#include <QGuiApplication>
#include <QPalette>
#include <QRegularExpression>
#include <QThread>

#include <algorithm>
#include <utility>

namespace Quillmere {

namespace {

const QString portal = u"org.freedesktop.portal.Desktop"_qs;
const QString object = u"/org/freedesktop/portal/desktop"_qs;
const QString interface = u"org.freedesktop.portal.Settings"_qs;

const QString appearanceGroup = u"org.freedesktop.appearance"_qs;
const QString schemeKey = u"color-scheme"_qs;
const QString desktopGroup = u"org.gnome.desktop.interface"_qs;
const QString animationsKey = u"enable-animations"_qs;

const QString themeKey = u"gtk-theme"_qs;

// The portal's answers for color-scheme: 0 no preference, 1 dark, 2 light.
constexpr uint preferDark = 1;
constexpr uint preferLight = 2;
constexpr int answerMilliseconds = 5000;
constexpr unsigned long millisecondsBetweenLooks = 2;

std::optional<ColorScheme> preference(uint answer)
{
    if (answer == preferDark)
        return ColorScheme::Dark;
    return answer == preferLight ? std::optional(ColorScheme::Light) : std::nullopt;
}

/// As in "Adwaita:dark", "Greybird-dark" and "Mint-Y-Dark-Aqua", but not in "Arc-Darker", whose windows are light.
bool isDarkTheme(const QByteArray &name)
{
    static const QRegularExpression variant(u"[:-]dark(-|$)"_qs, QRegularExpression::CaseInsensitiveOption);
    return variant.match(QString::fromUtf8(name)).hasMatch();
}

bool isDarkPalette()
{
    return QGuiApplication::palette().color(QPalette::Window).lightness() < 128;
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
    , m_themeOfEnvironment(gtkTheme)
    , m_told(colorScheme(), m_reducedMotion)
{
    qGuiApp->installEventFilter(this);
    if (!m_bus.isConnected())
        return;
    // QtDBus registers the type with the first message it reads; the connection below is made before that.
    qRegisterMetaType<QDBusVariant>();
    m_bus.connect(portal, object, interface, u"SettingChanged"_qs, this,
                  SLOT(takeSetting(QString, QString, QDBusVariant)));
    ask(appearanceGroup, schemeKey);
    ask(desktopGroup, themeKey);
    ask(desktopGroup, animationsKey);
}

void LinuxDesktopAppearance::observe(std::function<void()> changed)
{
    m_changed = std::move(changed);
}

void LinuxDesktopAppearance::awaitAnswers(std::chrono::milliseconds patience)
{
    // Answers arrive on a thread of the bus; no events are handled here, since windows must not come to life by them.
    const QDeadlineTimer deadline(patience);
    const auto isAnswered = [](const Question &question) { return question.call->isFinished(); };
    while (!std::ranges::all_of(m_questions, isAnswered) && !deadline.hasExpired())
        QThread::msleep(millisecondsBetweenLooks);
    takeAnswers();
}

bool LinuxDesktopAppearance::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == qGuiApp && event->type() == QEvent::ApplicationPaletteChange)
        tellChanges();
    return QObject::eventFilter(watched, event);
}

void LinuxDesktopAppearance::takeSetting(const QString &group, const QString &key, const QDBusVariant &value)
{
    const QVariant setting = unwrapped(QVariant::fromValue(value));
    if (group == appearanceGroup && key == schemeKey)
        m_preference = preference(setting.toUInt());
    else if (group == desktopGroup && key == themeKey)
        m_themeOfDesktop = setting.toString().toUtf8();
    else if (group == desktopGroup && key == animationsKey && setting.metaType() == QMetaType::fromType<bool>())
        m_reducedMotion = !setting.toBool();
    tellChanges();
}

void LinuxDesktopAppearance::ask(const QString &group, const QString &key)
{
    QDBusMessage question = QDBusMessage::createMethodCall(portal, object, interface, u"Read"_qs);
    question << group << key;
    auto *call = new QDBusPendingCallWatcher(m_bus.asyncCall(question, answerMilliseconds), this);
    m_questions.append({group, key, call});
    connect(call, &QDBusPendingCallWatcher::finished, this, &LinuxDesktopAppearance::takeAnswers);
}

void LinuxDesktopAppearance::takeAnswers()
{
    for (const Question &question : std::exchange(m_questions, {})) {
        if (!question.call->isFinished()) {
            m_questions.append(question);
            continue;
        }
        const QDBusPendingReply<QDBusVariant> answer = *question.call;
        question.call->disconnect(this);
        question.call->deleteLater();
        if (!answer.isError())
            takeSetting(question.group, question.key, answer.value());
    }
}

void LinuxDesktopAppearance::tellChanges()
{
    const std::pair now(colorScheme(), m_reducedMotion);
    if (std::exchange(m_told, now) != now && m_changed)
        m_changed();
}

ColorScheme LinuxDesktopAppearance::colorScheme() const
{
    if (m_preference)
        return *m_preference;
    const bool isDark = m_themeOfEnvironment.isEmpty() ? isDarkTheme(m_themeOfDesktop) || isDarkPalette()
                                                       : isDarkTheme(m_themeOfEnvironment);
    return isDark ? ColorScheme::Dark : ColorScheme::Light;
}

} // namespace Quillmere
