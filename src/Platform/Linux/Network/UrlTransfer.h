#pragma once

#include "Platform/UrlSession.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSslConfiguration>
#include <QTimer>

#include <functional>
#include <optional>

namespace Quillmere {

/// One request on its way, with a connection of its own. Ends exactly once, at the latest with this object, and then
/// deletes itself. GUI thread only.
class UrlTransfer final : public QObject
{
    Q_OBJECT

public:
    /// Takes what has come, piece by piece; false ends the transfer for want of room.
    using Sink = std::function<bool(const QByteArray &piece)>;
    /// Called with the status of HTTP, or with why there is none.
    using Ended = std::function<void(const Result<int> &status)>;

    UrlTransfer(const UrlRequest &request, const QSslConfiguration &trust, Sink sink, Ended ended, QObject *parent);
    ~UrlTransfer() override;

    void start(std::stop_token stop);

private:
    void take();
    void finish();
    void end(const Result<int> &status);

    const UrlRequest m_request;
    const QSslConfiguration m_trust;
    Sink m_sink;
    Ended m_ended; ///< Null once it has ended.
    QNetworkAccessManager m_network;
    QNetworkReply *m_reply = nullptr;
    QTimer m_deadline;
    qint64 m_received = 0;
    std::optional<std::stop_callback<std::function<void()>>> m_whenStopped;
};

} // namespace Quillmere
