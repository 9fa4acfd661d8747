#include "Platform/Linux/System/Inhibition.h"

#include <QDBusPendingCallWatcher>

#include <limits>

namespace Quillmere {

namespace {

// libdbus: the greatest number is no limit. One would drop a late answer, and with it the number to give back.
constexpr int noLimit = std::numeric_limits<int>::max();

QDBusMessage sameObject(const QDBusMessage &question, const QString &method)
{
    if (method.isEmpty())
        return {};
    QDBusMessage message
        = QDBusMessage::createMethodCall(question.service(), question.path(), question.interface(), method);
    message.setAutoStartService(false);
    return message;
}

bool isGranted(const QDBusPendingCall &answer)
{
    return answer.isFinished() && !answer.isError() && answer.reply().arguments().size() == 1;
}

void returnNumber(const QDBusConnection &bus, QDBusMessage giveBack, const QDBusPendingCall &answer)
{
    if (giveBack.type() != QDBusMessage::MethodCallMessage || !isGranted(answer))
        return;
    giveBack.setArguments(answer.reply().arguments());
    bus.send(giveBack);
}

} // namespace

Inhibition::Inhibition(const QDBusConnection &bus, const QDBusMessage &question, const QString &giveBack)
    : m_bus(bus)
    , m_giveBack(sameObject(question, giveBack))
    , m_answer(m_bus.asyncCall(question, noLimit))
{
}

Inhibition::~Inhibition()
{
    if (m_answer.isFinished()) {
        returnNumber(m_bus, m_giveBack, m_answer);
        return;
    }
    // Deletes itself, and with it a descriptor that came.
    auto *late = new QDBusPendingCallWatcher(m_answer);
    QObject::connect(late, &QDBusPendingCallWatcher::finished, late, [bus = m_bus, giveBack = m_giveBack, late] {
        returnNumber(bus, giveBack, *late);
        late->deleteLater();
    });
}

bool Inhibition::isObtained() const
{
    return isGranted(m_answer);
}

} // namespace Quillmere
