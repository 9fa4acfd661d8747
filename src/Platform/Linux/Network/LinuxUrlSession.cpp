#include "Platform/Linux/Network/LinuxUrlSession.h"

#include "Platform/Linux/Network/AnonymousFile.h"
#include "Platform/Linux/Network/UrlTransfer.h"

#include <QPromise>

namespace Quillmere {

namespace {

/// Why @p request is not even begun, if it is not.
std::optional<Failure> refusalOf(const UrlRequest &request, const std::stop_token &stop)
{
    if (stop.stop_requested())
        return Failure{Failure::Kind::Cancelled, {}, u"The request was stopped."_qs};
    if (request.url.scheme() != u"https" || request.url.host().isEmpty())
        return Failure{Failure::Kind::NotSupported, {}, u"Only https is fetched."_qs};
    const QString host = request.url.host();
    // RFC 2606: no host will ever have such a name.
    if (host.endsWith(u".example") || host.endsWith(u".invalid"))
        return Failure{Failure::Kind::NotFound, {}, u"There is no such host."_qs};
    return std::nullopt;
}

/// The answer to one request, told once.
template<typename Response>
class Answer
{
public:
    Answer() { m_promise.start(); }

    [[nodiscard]] QFuture<Result<Response>> future() { return m_promise.future(); }
    void tell(const Result<Response> &result)
    {
        m_promise.addResult(result);
        m_promise.finish();
    }

private:
    QPromise<Result<Response>> m_promise;
};

} // namespace

LinuxUrlSession::LinuxUrlSession(std::optional<QSslConfiguration> trust)
    : m_trust(std::move(trust))
    , m_transfers(std::make_unique<QObject>())
{
}

LinuxUrlSession::~LinuxUrlSession() = default;

QSslConfiguration LinuxUrlSession::trust() const
{
    return m_trust ? *m_trust : QSslConfiguration::defaultConfiguration();
}

QFuture<Result<UrlResponse>> LinuxUrlSession::data(const UrlRequest &request, std::stop_token stop)
{
    const auto answer = std::make_shared<Answer<UrlResponse>>();
    const auto body = std::make_shared<QByteArray>();
    if (const std::optional<Failure> refusal = refusalOf(request, stop)) {
        answer->tell(*refusal);
        return answer->future();
    }
    const auto take = [body](const QByteArray &piece) {
        body->append(piece);
        return true;
    };
    const auto tell = [answer, body](const Result<int> &status) {
        if (status)
            answer->tell(UrlResponse{status.value(), *body});
        else
            answer->tell(status.failure());
    };
    (new UrlTransfer(request, trust(), take, tell, m_transfers.get()))->start(std::move(stop));
    return answer->future();
}

QFuture<Result<DownloadResponse>> LinuxUrlSession::download(const UrlRequest &request, std::stop_token stop)
{
    const auto answer = std::make_shared<Answer<DownloadResponse>>();
    if (const std::optional<Failure> refusal = refusalOf(request, stop)) {
        answer->tell(*refusal);
        return answer->future();
    }
    const auto file = std::make_shared<AnonymousFile>();
    const auto take = [file](const QByteArray &piece) { return file->append(piece); };
    const auto tell = [answer, file](const Result<int> &status) {
        if (status)
            answer->tell(DownloadResponse{status.value(), file});
        else
            answer->tell(status.failure());
    };
    (new UrlTransfer(request, trust(), take, tell, m_transfers.get()))->start(std::move(stop));
    return answer->future();
}

} // namespace Quillmere
