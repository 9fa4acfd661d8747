#include "App/SingleInstance.h"

#include <QDeadlineTimer>
#include <QLocalSocket>
#include <QThread>

#include <algorithm>

namespace Quillmere {

namespace {

// Long enough for a busy machine; an instance that hangs must not keep the user from a new one for ever.
constexpr int answerTimeoutMilliseconds = 3000;
// A token is some tens of characters; whatever is longer is no start of ours.
constexpr qint64 mostBytesOfARequest = 4096;

} // namespace

SingleInstance::SingleInstance(const QString &folder, const QString &name, QObject *parent)
    : QObject(parent)
    , m_socketPath(folder + u'/' + name + u".socket"_qs)
    , m_lock(folder + u'/' + name + u".lock"_qs)
{
    // Held for as long as the program runs, however long that is; a dead owner is recognised by its process.
    m_lock.setStaleLockTime(0);
}

bool SingleInstance::claim()
{
    if (m_lock.tryLock(0)) {
        listen();
        return true;
    }
    return !askRunningInstance();
}

bool SingleInstance::askRunningInstance() const
{
    const QDeadlineTimer patience(answerTimeoutMilliseconds);
    QLocalSocket socket;
    // An instance that is just starting holds the lock and does not listen yet.
    for (socket.connectToServer(m_socketPath); !socket.waitForConnected(); socket.connectToServer(m_socketPath)) {
        if (patience.hasExpired())
            return false;
        QThread::msleep(20);
    }
    socket.write(qgetenv("XDG_ACTIVATION_TOKEN") + '\n');
    // The kernel takes the request in the name of an instance that hangs; only its own answer counts.
    return socket.waitForReadyRead(std::max<int>(1, int(patience.remainingTime())));
}

void SingleInstance::listen()
{
    QLocalServer::removeServer(m_socketPath);
    m_server = std::make_unique<QLocalServer>();
    m_server->setSocketOptions(QLocalServer::UserAccessOption);
    connect(m_server.get(), &QLocalServer::newConnection, this, &SingleInstance::answer);
    m_server->listen(m_socketPath);
}

void SingleInstance::answer()
{
    while (QLocalSocket *socket = m_server->nextPendingConnection()) {
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        const auto read = [this, socket] {
            if (socket->canReadLine()) {
                const QString token = QString::fromUtf8(socket->readLine(mostBytesOfARequest).trimmed());
                socket->write("\n");
                Q_EMIT activationRequested(token);
            } else if (socket->bytesAvailable() > mostBytesOfARequest) {
                socket->abort();
            }
        };
        connect(socket, &QLocalSocket::readyRead, this, read);
        read();
    }
}

} // namespace Quillmere
