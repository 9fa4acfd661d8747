#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QSslConfiguration>
#include <QSslServer>
#include <QTemporaryDir>
#include <QUrl>

namespace Quillmere {

/// A host on this machine that speaks HTTPS, with a certificate authority of its own, made for it by openssl.
class TlsHost
{
public:
    TlsHost();
    ~TlsHost();
    Q_DISABLE_COPY_MOVE(TlsHost)

    /// Why there is none; empty when there is one.
    [[nodiscard]] QByteArray reasonWhyNot() const { return m_reasonWhyNot; }

    /// From now on @p path is answered with exactly these bytes, after which the connection is closed.
    void answer(const QString &path, const QByteArray &bytes) { m_answers.insert(path, bytes); }
    void answer(const QString &path, int status, const QByteArray &body, const QByteArray &headers = {});
    /// From now on @p path is answered without end.
    void flood(const QString &path) { m_floods.append(path); }
    /// From now on @p path is answered a few bytes at a time, a hundred of them, with a while between two.
    void trickle(const QString &path) { m_trickles.append(path); }

    [[nodiscard]] QUrl url(const QString &path) const;
    /// Who trusts this host.
    [[nodiscard]] QSslConfiguration trust() const;
    /// What was asked for, line by line as it came.
    [[nodiscard]] const QList<QByteArray> &requests() const { return m_requests; }
    [[nodiscard]] int connections() const { return m_connections; }

private:
    void makeCertificates();
    [[nodiscard]] bool runOpenSsl(const QStringList &arguments);
    void serve(QSslSocket *connection);
    void respond(QSslSocket *connection, const QByteArray &request);
    static void trickleTo(QSslSocket *connection);

    QTemporaryDir m_folder;
    QByteArray m_reasonWhyNot;
    QSslServer m_server;
    QHash<QString, QByteArray> m_answers;
    QStringList m_floods;
    QStringList m_trickles;
    QList<QByteArray> m_requests;
    int m_connections = 0;
};

} // namespace Quillmere
