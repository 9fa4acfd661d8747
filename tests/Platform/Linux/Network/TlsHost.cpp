#include "Platform/Linux/Network/TlsHost.h"

#include <QFile>
#include <QProcess>
#include <QSslCertificate>
#include <QSslKey>
#include <QSslSocket>
#include <QTimer>

namespace Quillmere {

TlsHost::TlsHost()
{
    makeCertificates();
    if (!m_reasonWhyNot.isEmpty())
        return;
    QFile key(m_folder.filePath(u"host.key"_qs));
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setLocalCertificate(QSslCertificate::fromPath(m_folder.filePath(u"host.pem"_qs)).value(0));
    if (key.open(QIODevice::ReadOnly))
        configuration.setPrivateKey(QSslKey(&key, QSsl::Ec));
    m_server.setSslConfiguration(configuration);
    QObject::connect(&m_server, &QTcpServer::pendingConnectionAvailable, &m_server, [this] {
        while (auto *const connection = qobject_cast<QSslSocket *>(m_server.nextPendingConnection()))
            serve(connection);
    });
    if (!m_server.listen(QHostAddress::LocalHost))
        m_reasonWhyNot = m_server.errorString().toUtf8();
}

TlsHost::~TlsHost()
{
    m_server.close();
}

bool TlsHost::runOpenSsl(const QStringList &arguments)
{
    QProcess openssl;
    openssl.setWorkingDirectory(m_folder.path());
    openssl.setProcessChannelMode(QProcess::MergedChannels);
    openssl.start(u"openssl"_qs, arguments);
    if (openssl.waitForFinished() && openssl.exitStatus() == QProcess::NormalExit && openssl.exitCode() == 0)
        return true;
    m_reasonWhyNot = "openssl: " + openssl.readAll();
    return false;
}

void TlsHost::makeCertificates()
{
    QFile names(m_folder.filePath(u"names"_qs));
    if (!names.open(QIODevice::WriteOnly) || names.write("subjectAltName=DNS:localhost\n") < 0)
        m_reasonWhyNot = "There is no temporary folder.";
    names.close();
    const QStringList authority{u"req"_qs,
                                u"-x509"_qs,
                                u"-newkey"_qs,
                                u"ec"_qs,
                                u"-pkeyopt"_qs,
                                u"ec_paramgen_curve:prime256v1"_qs,
                                u"-nodes"_qs,
                                u"-days"_qs,
                                u"2"_qs,
                                u"-subj"_qs,
                                u"/CN=Trial authority"_qs,
                                u"-keyout"_qs,
                                u"ca.key"_qs,
                                u"-out"_qs,
                                u"ca.pem"_qs};
    const QStringList host{u"req"_qs,     u"-new"_qs,     u"-newkey"_qs,
                           u"ec"_qs,      u"-pkeyopt"_qs, u"ec_paramgen_curve:prime256v1"_qs,
                           u"-nodes"_qs,  u"-subj"_qs,    u"/CN=localhost"_qs,
                           u"-keyout"_qs, u"host.key"_qs, u"-out"_qs,
                           u"host.csr"_qs};
    const QStringList signature{u"x509"_qs,     u"-req"_qs,   u"-in"_qs,
                                u"host.csr"_qs, u"-CA"_qs,    u"ca.pem"_qs,
                                u"-CAkey"_qs,   u"ca.key"_qs, u"-CAcreateserial"_qs,
                                u"-days"_qs,    u"2"_qs,      u"-extfile"_qs,
                                u"names"_qs,    u"-out"_qs,   u"host.pem"_qs};
    for (const QStringList &step : {authority, host, signature}) {
        if (!m_reasonWhyNot.isEmpty() || !runOpenSsl(step))
            return;
    }
}

QUrl TlsHost::url(const QString &path) const
{
    return QUrl(u"https://localhost:%1%2"_qs.arg(m_server.serverPort()).arg(path));
}

QSslConfiguration TlsHost::trust() const
{
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setCaCertificates(QSslCertificate::fromPath(m_folder.filePath(u"ca.pem"_qs)));
    return configuration;
}

void TlsHost::answer(const QString &path, int status, const QByteArray &body, const QByteArray &headers)
{
    answer(path,
           "HTTP/1.1 " + QByteArray::number(status) + " Status\r\nContent-Length: " + QByteArray::number(body.size())
               + "\r\nConnection: close\r\n" + headers + "\r\n" + body);
}

void TlsHost::serve(QSslSocket *connection)
{
    ++m_connections;
    const auto received = std::make_shared<QByteArray>();
    QObject::connect(connection, &QSslSocket::disconnected, connection, &QObject::deleteLater);
    QObject::connect(connection, &QSslSocket::readyRead, connection, [this, connection, received] {
        received->append(connection->readAll());
        if (received->endsWith("\r\n\r\n"))
            respond(connection, std::exchange(*received, {}));
    });
}

void TlsHost::respond(QSslSocket *connection, const QByteArray &request)
{
    m_requests.append(request);
    const QString path = QString::fromLatin1(request.split(' ').value(1));
    if (m_floods.contains(path)) {
        connection->write("HTTP/1.1 200 OK\r\n\r\n");
        const auto more = [connection] { connection->write(QByteArray(64 * 1024, 'x')); };
        QObject::connect(connection, &QSslSocket::encryptedBytesWritten, connection, more);
        more();
    } else if (m_trickles.contains(path)) {
        trickleTo(connection);
    } else if (m_answers.contains(path)) {
        connection->write(m_answers.value(path));
        connection->disconnectFromHost();
    }
}

void TlsHost::trickleTo(QSslSocket *connection)
{
    connection->write("HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n");
    auto *const pace = new QTimer(connection);
    QObject::connect(pace, &QTimer::timeout, connection, [connection, left = 100]() mutable {
        connection->write("x");
        if (--left == 0)
            connection->disconnectFromHost();
    });
    pace->start(std::chrono::milliseconds(50));
}

} // namespace Quillmere
