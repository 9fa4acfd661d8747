#include "Platform/Linux/Network/UrlTransfer.h"

#include <algorithm>
#include <utility>

namespace Quillmere {

namespace {

constexpr qint64 pieceSize = 64 * 1024;
constexpr int mostRedirections = 5;

QNetworkRequest networkRequest(const UrlRequest &request, const QSslConfiguration &trust)
{
    QNetworkRequest made(request.url);
    made.setSslConfiguration(trust);
    made.setTransferTimeout(static_cast<int>(request.timeout.count()));
    // From https this goes to nothing but https.
    made.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    made.setMaximumRedirectsAllowed(mostRedirections);
    made.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    made.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    made.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    if (request.ignoresCache) {
        made.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
        made.setRawHeader("Cache-Control", "no-cache");
    }
    made.setHeader(QNetworkRequest::UserAgentHeader, u"Quillmere"_qs);
    // A few packed bytes can stand for gigabytes, so nothing packed is asked for, and nothing is unpacked.
    made.setRawHeader("Accept-Encoding", "identity");
    return made;
}

/// A status of failure is an answer too. What breaks off halfway, or leads to where nothing is fetched, is none.
bool isAnswer(QNetworkReply::NetworkError error)
{
    return error == QNetworkReply::NoError
        || (error >= QNetworkReply::ContentAccessDenied && error <= QNetworkReply::UnknownContentError)
        || (error >= QNetworkReply::InternalServerError && error <= QNetworkReply::UnknownServerError);
}

Failure failureOf(const QNetworkReply &reply)
{
    const bool isUnknown = reply.error() == QNetworkReply::HostNotFoundError;
    return {isUnknown ? Failure::Kind::NotFound : Failure::Kind::Other, {}, reply.errorString()};
}

} // namespace

UrlTransfer::UrlTransfer(const UrlRequest &request, const QSslConfiguration &trust, Sink sink, Ended ended,
                         QObject *parent)
    : QObject(parent)
    , m_request(request)
    , m_trust(trust)
    , m_sink(std::move(sink))
    , m_ended(std::move(ended))
{
    m_deadline.setSingleShot(true);
    m_deadline.setInterval(m_request.deadline);
    connect(&m_deadline, &QTimer::timeout, this, [this] {
        end(Failure{Failure::Kind::Other, {}, u"The host takes too long."_qs});
    });
}

UrlTransfer::~UrlTransfer()
{
    end(Failure{Failure::Kind::Cancelled, {}, u"The session has ended."_qs});
}

void UrlTransfer::start(std::stop_token stop)
{
    m_reply = m_network.get(networkRequest(m_request, m_trust));
    m_reply->setReadBufferSize(pieceSize);
    connect(m_reply, &QNetworkReply::readyRead, this, &UrlTransfer::take);
    connect(m_reply, &QNetworkReply::finished, this, &UrlTransfer::finish);
    m_deadline.start();
    m_whenStopped.emplace(std::move(stop), [this] {
        end(Failure{Failure::Kind::Cancelled, {}, u"The request was stopped."_qs});
    });
}

void UrlTransfer::take()
{
    while (m_ended && m_reply->bytesAvailable() > 0) {
        const QByteArray piece = m_reply->read(std::min(m_reply->bytesAvailable(), pieceSize));
        m_received += piece.size();
        if (m_received > m_request.mostBytes || !m_sink(piece))
            end(Failure{Failure::Kind::NoSpace, {}, u"The answer is too long."_qs});
    }
}

void UrlTransfer::finish()
{
    take();
    const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (isAnswer(m_reply->error()) && status > 0)
        end(status);
    else
        end(failureOf(*m_reply));
}

void UrlTransfer::end(const Result<int> &status)
{
    const Ended ended = std::exchange(m_ended, nullptr);
    if (!ended)
        return;
    m_deadline.stop();
    if (m_reply) {
        m_reply->disconnect(this);
        m_reply->abort();
    }
    deleteLater();
    ended(status);
}

} // namespace Quillmere
