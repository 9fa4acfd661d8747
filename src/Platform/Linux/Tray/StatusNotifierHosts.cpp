#include "Platform/Linux/Tray/StatusNotifierHosts.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace Quillmere {

namespace {

const QString service = u"org.kde.StatusNotifierWatcher"_qs;
const QString object = u"/StatusNotifierWatcher"_qs;
const QString interface = u"org.kde.StatusNotifierWatcher"_qs;

} // namespace

StatusNotifierHosts::StatusNotifierHosts(const QDBusConnection &bus, QObject *parent)
    : QObject(parent)
    , m_bus(bus)
{
    if (!m_bus.isConnected()) {
        QMetaObject::invokeMethod(
            this, [this] { enter(State::Absent); }, Qt::QueuedConnection);
        return;
    }
    m_watcher.setConnection(m_bus);
    m_watcher.setWatchMode(QDBusServiceWatcher::WatchForOwnerChange);
    m_watcher.addWatchedService(service);
    connect(&m_watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString &, const QString &, const QString &owner) { takeOwner(owner); });
    m_bus.connect(service, object, interface, u"StatusNotifierHostRegistered"_qs, this, SLOT(ask()));
    m_bus.connect(service, object, interface, u"StatusNotifierHostUnregistered"_qs, this, SLOT(ask()));
    ask();
}

void StatusNotifierHosts::takeOwner(const QString &owner)
{
    ++m_questions;
    enter(State::Absent);
    if (!owner.isEmpty())
        ask();
}

void StatusNotifierHosts::ask()
{
    QDBusMessage question
        = QDBusMessage::createMethodCall(service, object, u"org.freedesktop.DBus.Properties"_qs, u"Get"_qs);
    question << interface << u"IsStatusNotifierHostRegistered"_qs;
    question.setAutoStartService(false);
    auto *answering = new QDBusPendingCallWatcher(m_bus.asyncCall(question), this);
    connect(answering, &QDBusPendingCallWatcher::finished, this, [this, answering, number = ++m_questions] {
        answering->deleteLater();
        const QDBusPendingReply<QDBusVariant> answer = *answering;
        if (number == m_questions)
            enter(answer.isValid() && answer.value().variant().toBool() ? State::Present : State::Absent);
    });
}

void StatusNotifierHosts::enter(State state)
{
    if (m_state == state)
        return;
    m_state = state;
    Q_EMIT changed();
}

} // namespace Quillmere
