#include "Tools/PackageTransaction.h"

#include <QDBusObjectPath>
#include <QDBusServiceWatcher>

namespace Quillmere {

namespace {

const QString service = u"org.freedesktop.PackageKit"_qs;
const QString transactionInterface = u"org.freedesktop.PackageKit.Transaction"_qs;

// PackageKit's own number for an end with success; those above it are all failures.
constexpr uint success = 1;
constexpr uint lost = 0;

} // namespace

PackageTransaction::PackageTransaction(const QDBusConnection &systemBus)
    : m_bus(systemBus)
{
}

Result<QList<PackageTransaction::Package>> PackageTransaction::run(const QString &method, const QVariantList &arguments)
{
    const Result<QString> object = begin();
    if (!object)
        return object.failure();
    QDBusServiceWatcher watcher(service, m_bus, QDBusServiceWatcher::WatchForUnregistration);
    connect(&watcher, &QDBusServiceWatcher::serviceUnregistered, this, &PackageTransaction::lose);
    if (!listen(object.value()))
        return Failure{Failure::Kind::Other, {}, u"PackageKit cannot be listened to."_qs};
    const QDBusMessage answer = call(object.value(), transactionInterface, method, arguments);
    if (answer.type() != QDBusMessage::ReplyMessage)
        return Failure{Failure::Kind::Other, {}, answer.errorMessage()};
    if (!m_exit)
        m_loop.exec();
    if (m_exit == success)
        return m_packages;
    return Failure{Failure::Kind::Other, {}, m_error.isEmpty() ? u"PackageKit does not say why."_qs : m_error};
}

Result<QString> PackageTransaction::begin()
{
    if (!m_bus.isConnected())
        return Failure{Failure::Kind::NotSupported, {}, u"There is no system bus."_qs};
    const QDBusMessage answer = call(u"/org/freedesktop/PackageKit"_qs, service, u"CreateTransaction"_qs, {});
    if (answer.type() != QDBusMessage::ReplyMessage)
        return Failure{Failure::Kind::NotSupported, {}, answer.errorMessage()};
    const QString object = answer.arguments().value(0).value<QDBusObjectPath>().path();
    if (object.isEmpty())
        return Failure{Failure::Kind::Malformed, {}, u"PackageKit answered something else."_qs};
    return object;
}

bool PackageTransaction::listen(const QString &object)
{
    const auto hear = [&](const QString &signal, const char *slot) {
        return m_bus.connect(service, object, transactionInterface, signal, this, slot);
    };
    return hear(u"Package"_qs, SLOT(addPackage(uint, QString, QString)))
        && hear(u"ErrorCode"_qs, SLOT(takeError(uint, QString))) && hear(u"Finished"_qs, SLOT(finish(uint, uint)));
}

QDBusMessage PackageTransaction::call(const QString &object, const QString &interface, const QString &method,
                                      const QVariantList &arguments)
{
    QDBusMessage question = QDBusMessage::createMethodCall(service, object, interface, method);
    question.setArguments(arguments);
    return m_bus.call(question, QDBus::Block);
}

void PackageTransaction::addPackage(uint information, const QString &identifier, const QString &)
{
    m_packages.append({information, identifier});
}

void PackageTransaction::takeError(uint, const QString &details)
{
    m_error = details.trimmed();
}

void PackageTransaction::finish(uint exit, uint)
{
    m_exit = exit;
    m_loop.quit();
}

void PackageTransaction::lose()
{
    m_error = u"PackageKit has gone away meanwhile."_qs;
    finish(lost, 0);
}

} // namespace Quillmere
