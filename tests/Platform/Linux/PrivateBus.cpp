#include "Platform/Linux/PrivateBus.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDeadlineTimer>
#include <QFile>
#include <QThread>
#include <QUuid>

namespace Quillmere {

namespace {

constexpr int patienceForTheBus = 20000;
const QString portalName = u"org.freedesktop.portal.Desktop"_qs;
const QString portalObject = u"/org/freedesktop/portal/desktop"_qs;
const QString settingsInterface = u"org.freedesktop.portal.Settings"_qs;

// Without folders of services: those of the machine would start its own portal.
const QString configuration = uR"(<busconfig>
  <type>session</type>
  <listen>unix:dir=%1</listen>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)"_qs;

void end(QProcess &process)
{
    if (process.state() == QProcess::NotRunning)
        return;
    process.terminate();
    if (!process.waitForFinished(patienceForTheBus))
        process.kill();
    process.waitForFinished(patienceForTheBus);
}

} // namespace

PrivateBus::PrivateBus()
    : m_name(QUuid::createUuid().toString())
{
    QFile file(m_folder.filePath(u"bus.conf"_qs));
    if (!file.open(QFile::WriteOnly))
        return;
    file.write(configuration.arg(m_folder.path()).toUtf8());
    file.close();
    m_daemon.start(u"dbus-daemon"_qs, {u"--config-file="_qs + file.fileName(), u"--nofork"_qs, u"--print-address"_qs});
    if (!m_daemon.waitForReadyRead(patienceForTheBus))
        return;
    m_address = QString::fromUtf8(m_daemon.readLine()).trimmed();
    m_connection = std::make_unique<QDBusConnection>(QDBusConnection::connectToBus(m_address, m_name));
}

PrivateBus::~PrivateBus()
{
    m_connection.reset();
    QDBusConnection::disconnectFromBus(m_name);
    end(m_portal);
    end(m_daemon);
}

bool PrivateBus::startPortal(const QString &python)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_qs, m_address);
    m_portal.setProcessEnvironment(environment);
    // Another Python that stands first in PATH need not have the distribution's modules.
    m_portal.start(u"/usr/bin/python3"_qs,
                   {u"-m"_qs, u"dbusmock"_qs, u"--session"_qs, portalName, portalObject, settingsInterface});
    const QDeadlineTimer deadline(patienceForTheBus);
    while (!m_connection->interface()->isServiceRegistered(portalName)) {
        if (deadline.hasExpired() || !m_portal.waitForStarted(patienceForTheBus)
            || m_portal.state() == QProcess::NotRunning)
            return false;
        QThread::msleep(20);
    }
    call(u"AddMethod"_qs, {settingsInterface, u"Read"_qs, u"ss"_qs, u"v"_qs, python});
    return true;
}

void PrivateBus::emitSettingChanged(const QString &group, const QString &key, const QVariant &value)
{
    const QVariantList arguments = {group, key, value};
    call(u"EmitSignal"_qs, {settingsInterface, u"SettingChanged"_qs, u"ssv"_qs, arguments});
}

void PrivateBus::call(const QString &method, const QVariantList &arguments)
{
    QDBusMessage message
        = QDBusMessage::createMethodCall(portalName, portalObject, u"org.freedesktop.DBus.Mock"_qs, method);
    message.setArguments(arguments);
    const QDBusMessage answer = m_connection->call(message, QDBus::Block, patienceForTheBus);
    if (answer.type() == QDBusMessage::ErrorMessage)
        qFatal("The pretended portal refused: %s", qPrintable(answer.errorMessage()));
}

} // namespace Quillmere
