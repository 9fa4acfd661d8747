#include "Fakes/PretendUrlSession.h"

#include <QTemporaryFile>

#include <optional>

namespace Quillmere {

namespace {

/// A file of its own in the temporary folder.
class TemporaryDownload final : public DownloadedFile
{
public:
    explicit TemporaryDownload(const QByteArray &body)
    {
        if (m_file.open()) {
            m_file.write(body);
            m_file.flush();
        }
    }

    [[nodiscard]] QUrl location() const override { return QUrl::fromLocalFile(m_file.fileName()); }

private:
    QTemporaryFile m_file;
};

Failure cancelled()
{
    return {Failure::Kind::Cancelled, {}, u"The request was stopped."_qs};
}

} // namespace

struct PretendUrlSession::Waiting
{
    UrlRequest request;
    std::function<void(const Result<UrlResponse> &)> answered;
    std::optional<std::stop_callback<std::function<void()>>> whenStopped;
};

PretendUrlSession::~PretendUrlSession()
{
    for (const std::shared_ptr<Waiting> &each : std::exchange(m_waiting, {}))
        each->answered(cancelled());
}

void PretendUrlSession::serve(const QUrl &url, const QByteArray &body, int status)
{
    m_answers.insert(url, {status, body});
}

void PretendUrlSession::release()
{
    m_isHolding = false;
    m_heldBack = {};
    for (const std::shared_ptr<Waiting> &each : std::exchange(m_waiting, {}))
        each->answered(answer(each->request));
}

Result<UrlResponse> PretendUrlSession::answer(const UrlRequest &request) const
{
    if (request.url.scheme() != u"https")
        return Failure{Failure::Kind::NotSupported, {}, u"Only https is fetched."_qs};
    const auto found = m_answers.constFind(request.url);
    if (found == m_answers.constEnd())
        return Failure{Failure::Kind::NotFound, {}, u"There is no such host."_qs};
    if (found->body.size() > request.mostBytes)
        return Failure{Failure::Kind::NoSpace, {}, u"The answer is too long."_qs};
    return *found;
}

void PretendUrlSession::receive(const UrlRequest &request, std::stop_token stop,
                                std::function<void(const Result<UrlResponse> &)> answered)
{
    m_requests.append(request);
    if (stop.stop_requested())
        return answered(cancelled());
    if (!m_isHolding && request.url != m_heldBack)
        return answered(answer(request));
    const auto waiting = std::make_shared<Waiting>();
    waiting->request = request;
    waiting->answered = std::move(answered);
    m_waiting.append(waiting);
    waiting->whenStopped.emplace(std::move(stop), [this, held = std::weak_ptr(waiting)] {
        const std::shared_ptr<Waiting> stopped = held.lock();
        if (stopped && m_waiting.removeOne(stopped))
            stopped->answered(cancelled());
    });
}

QFuture<Result<UrlResponse>> PretendUrlSession::data(const UrlRequest &request, std::stop_token stop)
{
    const auto promise = std::make_shared<QPromise<Result<UrlResponse>>>();
    promise->start();
    receive(request, std::move(stop), [promise](const Result<UrlResponse> &answer) {
        promise->addResult(answer);
        promise->finish();
    });
    return promise->future();
}

QFuture<Result<DownloadResponse>> PretendUrlSession::download(const UrlRequest &request, std::stop_token stop)
{
    const auto promise = std::make_shared<QPromise<Result<DownloadResponse>>>();
    promise->start();
    receive(request, std::move(stop), [promise](const Result<UrlResponse> &answer) {
        if (answer)
            promise->addResult(DownloadResponse{answer.value().status,
                                                std::make_shared<const TemporaryDownload>(answer.value().body)});
        else
            promise->addResult(answer.failure());
        promise->finish();
    });
    return promise->future();
}

} // namespace Quillmere
