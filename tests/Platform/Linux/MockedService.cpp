#include "Platform/Linux/MockedService.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusVariant>
#include <QDeadlineTimer>
#include <QThread>

namespace Quillmere {

namespace {

constexpr int patience = 20000;
const QString logindName = u"org.freedesktop.login1"_qs;
const QString logindObject = u"/org/freedesktop/login1"_qs;
const QString logindInterface = u"org.freedesktop.login1.Manager"_qs;

} // namespace

std::unique_ptr<MockedService> MockedService::logind(const PrivateBus &bus)
{
    return std::unique_ptr<MockedService>(new MockedService(bus, logindName, logindObject, logindInterface,
                                                            {u"--system"_qs, u"--template"_qs, u"logind"_qs}));
}

std::unique_ptr<MockedService> MockedService::udisks(const PrivateBus &bus, const QString &script)
{
    return std::unique_ptr<MockedService>(
        new MockedService(bus, u"org.freedesktop.UDisks2"_qs, u"/org/freedesktop/UDisks2"_qs,
                          u"org.freedesktop.UDisks2.Mock"_qs, {u"--system"_qs, u"--template"_qs, script}));
}

MockedService::MockedService(const PrivateBus &bus, const QString &service, const QString &object,
                             const QString &interface)
    : MockedService(bus, service, object, interface, {u"--session"_qs, service, object, interface})
{
}

MockedService::MockedService(const PrivateBus &bus, const QString &service, const QString &object,
                             const QString &interface, const QStringList &arguments)
    : m_bus(bus)
    , m_service(service)
    , m_object(object)
    , m_interface(interface)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_qs, bus.address());
    environment.insert(u"DBUS_SYSTEM_BUS_ADDRESS"_qs, bus.address());
    m_process.setProcessEnvironment(environment);
    m_process.setStandardOutputFile(QProcess::nullDevice());
    m_process.start(u"/usr/bin/python3"_qs, QStringList{u"-m"_qs, u"dbusmock"_qs} + arguments);
    const QDeadlineTimer deadline(patience);
    while (!bus.connection().interface()->isServiceRegistered(service)) {
        if (deadline.hasExpired() || !m_process.waitForStarted(patience) || m_process.state() == QProcess::NotRunning)
            return;
        QThread::msleep(20);
    }
    m_isRunning = true;
}

MockedService::~MockedService()
{
    m_process.kill();
    m_process.waitForFinished(patience);
}

void MockedService::addMethod(const QString &method, const QString &in, const QString &out, const QString &python)
{
    const QDBusMessage answer
        = call(u"org.freedesktop.DBus.Mock"_qs, u"AddMethod"_qs, {m_interface, method, in, out, python});
    if (answer.type() != QDBusMessage::ReplyMessage)
        qFatal("The mocked service refused: %s", qPrintable(answer.errorMessage()));
}

void MockedService::addProperty(const QString &name, const QVariant &value)
{
    const QVariantList arguments = {m_interface, name, QVariant::fromValue(QDBusVariant(value))};
    const QDBusMessage answer = call(u"org.freedesktop.DBus.Mock"_qs, u"AddProperty"_qs, arguments);
    if (answer.type() != QDBusMessage::ReplyMessage)
        qFatal("The mocked service refused: %s", qPrintable(answer.errorMessage()));
}

QStringList MockedService::calls() const
{
    const QDBusMessage answer = call(u"org.freedesktop.DBus.Mock"_qs, u"GetCalls"_qs, {});
    const QDBusArgument list = answer.arguments().value(0).value<QDBusArgument>();
    QStringList lines;
    list.beginArray();
    while (!list.atEnd()) {
        qulonglong time = 0;
        QString method;
        QVariantList arguments;
        list.beginStructure();
        list >> time >> method >> arguments;
        list.endStructure();
        QStringList words{method};
        for (const QVariant &argument : arguments)
            words.append(argument.toString());
        lines.append(words.join(u' '));
    }
    list.endArray();
    return lines;
}

QDBusMessage MockedService::call(const QString &interface, const QString &method, const QVariantList &arguments) const
{
    QDBusMessage message = QDBusMessage::createMethodCall(m_service, m_object, interface, method);
    message.setArguments(arguments);
    return m_bus.connection().call(message, QDBus::Block, patience);
}

QStringList inhibitorsOn(const PrivateBus &bus)
{
    const QDBusMessage answer = bus.connection().call(
        QDBusMessage::createMethodCall(logindName, logindObject, logindInterface, u"ListInhibitors"_qs), QDBus::Block,
        patience);
    if (answer.type() != QDBusMessage::ReplyMessage)
        return {u"no answer: "_qs + answer.errorMessage()};
    const QDBusArgument list = answer.arguments().value(0).value<QDBusArgument>();
    QStringList lines;
    list.beginArray();
    while (!list.atEnd()) {
        QString what, who, why, mode;
        uint user = 0, process = 0;
        list.beginStructure();
        list >> what >> who >> why >> mode >> user >> process;
        list.endStructure();
        lines.append(QStringList{what, who, why, mode}.join(u'|'));
    }
    list.endArray();
    return lines;
}

bool comesTrueSoon(const std::function<bool()> &condition)
{
    const QDeadlineTimer deadline(patience);
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents();
        QThread::msleep(5);
    }
    return true;
}

} // namespace Quillmere
