#include "Platform/Linux/System/LinuxPowerAssertions.h"

#include "Platform/Linux/System/Inhibition.h"

#include <QDeadlineTimer>
#include <QThread>

#include <algorithm>

namespace Quillmere {

namespace {

const QString who = u"Quillmere"_qs;
// The session manager's flags: 1 log out, 2 switch the user, 4 suspend, 8 mark the session idle. The last would keep
// the screen on as well.
constexpr uint suspendFlag = 4;
constexpr uint noWindow = 0;
constexpr unsigned long glanceMicroseconds = 1000;

QDBusMessage questionToLogind(const QString &name)
{
    QDBusMessage question = QDBusMessage::createMethodCall(u"org.freedesktop.login1"_qs, u"/org/freedesktop/login1"_qs,
                                                           u"org.freedesktop.login1.Manager"_qs, u"Inhibit"_qs);
    question << u"idle"_qs << who << name << u"block"_qs;
    return question;
}

QDBusMessage questionToSessionManager(const QString &name)
{
    QDBusMessage question = QDBusMessage::createMethodCall(
        u"org.gnome.SessionManager"_qs, u"/org/gnome/SessionManager"_qs, u"org.gnome.SessionManager"_qs, u"Inhibit"_qs);
    question << who << noWindow << name << suspendFlag;
    question.setAutoStartService(false);
    return question;
}

QDBusMessage questionToPowerManagement(const QString &name)
{
    QDBusMessage question = QDBusMessage::createMethodCall(
        u"org.freedesktop.PowerManagement"_qs, u"/org/freedesktop/PowerManagement/Inhibit"_qs,
        u"org.freedesktop.PowerManagement.Inhibit"_qs, u"Inhibit"_qs);
    question << who << name;
    question.setAutoStartService(false);
    return question;
}

} // namespace

LinuxPowerAssertions::LinuxPowerAssertions(const QDBusConnection &systemBus, const QDBusConnection &sessionBus,
                                           std::chrono::milliseconds patience)
    : m_systemBus(systemBus)
    , m_sessionBus(sessionBus)
    , m_patience(patience)
{
}

LinuxPowerAssertions::~LinuxPowerAssertions() = default;

Result<PowerAssertions::ID> LinuxPowerAssertions::create(const QString &type, quint32 level, const QString &name)
{
    if (type != u"PreventUserIdleSystemSleep" || level != on)
        return Failure{Failure::Kind::NotSupported, {}, u"There is no way to ask for %1 here."_qs.arg(type)};
    Inhibitions asked = ask(name);
    if (!waitForOne(asked))
        return Failure{Failure::Kind::NotSupported, {}, u"No service here holds sleep back."_qs};
    m_assertions.emplace(++m_last, std::move(asked));
    return m_last;
}

void LinuxPowerAssertions::release(ID assertion)
{
    m_assertions.erase(assertion);
}

LinuxPowerAssertions::Inhibitions LinuxPowerAssertions::ask(const QString &name) const
{
    Inhibitions asked;
    if (m_systemBus.isConnected())
        asked.push_back(std::make_unique<Inhibition>(m_systemBus, questionToLogind(name), QString()));
    if (m_sessionBus.isConnected()) {
        asked.push_back(std::make_unique<Inhibition>(m_sessionBus, questionToSessionManager(name), u"Uninhibit"_qs));
        asked.push_back(std::make_unique<Inhibition>(m_sessionBus, questionToPowerManagement(name), u"UnInhibit"_qs));
    }
    return asked;
}

bool LinuxPowerAssertions::waitForOne(const Inhibitions &asked) const
{
    // QtDBus takes answers in a thread of its own, so no event loop need run, and no click comes in between.
    const QDeadlineTimer deadline(m_patience);
    const auto obtained = [](const auto &inhibition) { return inhibition->isObtained(); };
    const auto answered = [](const auto &inhibition) { return inhibition->isAnswered(); };
    while (std::ranges::none_of(asked, obtained)) {
        if (deadline.hasExpired() || std::ranges::all_of(asked, answered))
            return std::ranges::any_of(asked, obtained);
        QThread::usleep(glanceMicroseconds);
    }
    return true;
}

} // namespace Quillmere
