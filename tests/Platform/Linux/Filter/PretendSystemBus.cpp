#include "Platform/Linux/Filter/PretendSystemBus.h"

#include <QDBusObjectPath>
#include <QDBusVariant>

namespace Quillmere {

namespace {

const QString connectionName = u"pretended system"_qs;
const QString filterName = u"com.veltrane.quillmere.Filter"_qs;
const QString managerObject = u"/org/freedesktop/systemd1"_qs;
const QString job = u"/org/freedesktop/systemd1/job/7"_qs;

} // namespace

PretendSystemBus::PretendSystemBus(const PrivateBus &bus)
    : m_bus(QDBusConnection::connectToBus(bus.address(), connectionName))
{
    m_bus.registerVirtualObject(managerObject, this);
    m_bus.registerVirtualObject(u"/com/veltrane/quillmere/Filter"_qs, this);
    m_bus.registerService(u"org.freedesktop.systemd1"_qs);
}

PretendSystemBus::~PretendSystemBus()
{
    QDBusConnection::disconnectFromBus(connectionName);
}

void PretendSystemBus::putFilter(bool isActive)
{
    m_isActive = isActive;
    m_bus.registerService(filterName);
}

bool PretendSystemBus::handleMessage(const QDBusMessage &message, const QDBusConnection &connection)
{
    if (message.member() == u"StartUnit"_qs && message.path() == managerObject) {
        start(message);
        return true;
    }
    const QVariantList question = {filterName, u"Active"_qs};
    if (message.member() != u"Get"_qs || message.arguments() != question || !m_isActive)
        return false;
    connection.send(message.createReply(QVariant::fromValue(QDBusVariant(*m_isActive))));
    return true;
}

void PretendSystemBus::start(const QDBusMessage &order)
{
    QString line = order.arguments().value(0).toString() + u' ' + order.arguments().value(1).toString();
    if (order.isInteractiveAuthorizationAllowed())
        line += u" interactive"_qs;
    orders.append(line);
    if (habit == Habit::Wait)
        return;
    if (habit == Habit::Refuse) {
        m_bus.send(order.createErrorReply(errorName, errorText));
        return;
    }
    putFilter(isActiveOnceStarted);
    if (habit == Habit::EndJobBeforeAnswering)
        endJob(job, order.arguments().value(0).toString());
    m_bus.send(order.createReply(QVariant::fromValue(QDBusObjectPath(job))));
    if (habit == Habit::Start)
        endJob(job, order.arguments().value(0).toString());
}

void PretendSystemBus::endJob(const QString &path, const QString &unit)
{
    QDBusMessage signal
        = QDBusMessage::createSignal(managerObject, u"org.freedesktop.systemd1.Manager"_qs, u"JobRemoved"_qs);
    signal << 7u << QVariant::fromValue(QDBusObjectPath(path)) << unit << jobResult;
    m_bus.send(signal);
}

} // namespace Quillmere
