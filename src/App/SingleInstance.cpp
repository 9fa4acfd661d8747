#include "App/SingleInstance.h"

#include "Utilities/Diagnostics.h"

#include <QDeadlineTimer>
#include <QLocalSocket>
#include <QThread>

namespace Quillmere {

namespace {

// A token is some tens of characters; whatever is longer is no start of ours.
constexpr qint64 mostBytesOfARequest = 4096;

constexpr unsigned long millisecondsBetweenTries = 20;

enum class Response { Answered, Silent, NobodyThere };

Response askForWindow(const QString &socketPath, std::chrono::milliseconds patience)
{
    QLocalSocket socket;
    socket.connectToServer(socketPath);
    if (!socket.waitForConnected())
        return Response::NobodyThere;
    socket.write(qgetenv("XDG_ACTIVATION_TOKEN") + '\n');
    // The kernel takes the request in the name of an instance that hangs; only its own answer counts.
    if (socket.waitForReadyRead(int(patience.count())))
        return Response::Answered;
    return socket.state() == QLocalSocket::ConnectedState ? Response::Silent : Response::NobodyThere;
}

void tellThatNobodyWillHear(const QString &reason)
{
    printDiagnostic(u"A second start cannot bring this window to the front: "_qs + reason);
}

} // namespace

SingleInstance::SingleInstance(const QString &folder, const QString &name, QObject *parent)
    : QObject(parent)
    , m_socketPath(folder + u'/' + name + u".socket"_qs)
    , m_lock(folder + u'/' + name + u".lock"_qs)
{
    // Held for as long as the program runs, however long that is; a dead owner is recognised by its process.
    m_lock.setStaleLockTime(0);
}

bool SingleInstance::claim(const Patience &patience)
{
    const QDeadlineTimer deadline(patience.untilItListens);
    // Who holds the lock and does not listen is still starting, or already ending.
    while (!m_lock.tryLock(0)) {
        if (m_lock.error() != QLockFile::LockFailedError) {
            tellThatNobodyWillHear(u"there is no place for a lock at "_qs + m_lock.fileName());
            return true;
        }
        const Response response = askForWindow(m_socketPath, patience.untilItAnswers);
        if (response == Response::Answered)
            return false;
        if (response == Response::Silent || deadline.hasExpired()) {
            tellThatNobodyWillHear(u"another instance was there first and does not answer"_qs);
            return true;
        }
        QThread::msleep(millisecondsBetweenTries);
    }
    // Not before events are handled, which is after the program has loaded: who is heard is also answered.
    QMetaObject::invokeMethod(this, &SingleInstance::listen, Qt::QueuedConnection);
    return true;
}

void SingleInstance::retire()
{
    m_server.reset();
    m_lock.unlock();
}

void SingleInstance::listen()
{
    QLocalServer::removeServer(m_socketPath);
    m_server = std::make_unique<QLocalServer>();
    m_server->setSocketOptions(QLocalServer::UserAccessOption);
    connect(m_server.get(), &QLocalServer::newConnection, this, &SingleInstance::answer);
    if (m_server->listen(m_socketPath))
        return;
    // Whoever starts later would wait for an answer that never comes.
    m_lock.unlock();
    tellThatNobodyWillHear(m_server->errorString());
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
