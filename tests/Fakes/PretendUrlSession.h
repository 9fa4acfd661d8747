#pragma once

#include "Platform/UrlSession.h"

#include <QHash>
#include <QList>
#include <QPromise>

#include <functional>

namespace Quillmere {

/// A network in memory, in which nothing can be reached until it is put there. What is held back answers when it is let
/// go, or when it is stopped.
class PretendUrlSession final : public UrlSession
{
public:
    ~PretendUrlSession() override;

    /// From now on @p url answers with @p body.
    void serve(const QUrl &url, const QByteArray &body, int status = 200);
    /// From now on @p url cannot be reached.
    void lose(const QUrl &url) { m_answers.remove(url); }
    /// From now on requests wait for release().
    void hold() { m_isHolding = true; }
    /// From now on requests for @p url wait, and no others.
    void holdBack(const QUrl &url) { m_heldBack = url; }
    /// Answers those that wait, and from now on at once.
    void release();

    [[nodiscard]] const QList<UrlRequest> &requests() const { return m_requests; } ///< In their order.
    [[nodiscard]] qsizetype waiting() const { return m_waiting.size(); }

    [[nodiscard]] QFuture<Result<UrlResponse>> data(const UrlRequest &request, std::stop_token stop) override;
    [[nodiscard]] QFuture<Result<DownloadResponse>> download(const UrlRequest &request, std::stop_token stop) override;

private:
    struct Waiting;

    [[nodiscard]] Result<UrlResponse> answer(const UrlRequest &request) const;
    void receive(const UrlRequest &request, std::stop_token stop,
                 std::function<void(const Result<UrlResponse> &)> answered);

    QHash<QUrl, UrlResponse> m_answers;
    QList<UrlRequest> m_requests;
    QList<std::shared_ptr<Waiting>> m_waiting;
    bool m_isHolding = false;
    QUrl m_heldBack;
};

} // namespace Quillmere
