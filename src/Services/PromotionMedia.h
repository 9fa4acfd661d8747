#pragma once

#include "Platform/UrlSession.h"

#include <QHash>
#include <QSet>

namespace Quillmere {

/// The network as the pictures and movies of the promotions see it: what has come once stays in memory, within a bound,
/// as long as the present round names its address. So a round that comes again and again is fetched once.
class PromotionMedia final : public UrlSession, public std::enable_shared_from_this<PromotionMedia>
{
public:
    /// Of all that is kept together. What does not fit any more is fetched again each time.
    static constexpr qint64 mostKept = 64 * 1024 * 1024;

    explicit PromotionMedia(std::shared_ptr<UrlSession> session);

    /// A new round begins: what lies at other addresses is forgotten.
    void keepOnly(const QSet<QUrl> &addresses);

    [[nodiscard]] QFuture<Result<UrlResponse>> data(const UrlRequest &request, std::stop_token stop) override;
    [[nodiscard]] QFuture<Result<DownloadResponse>> download(const UrlRequest &request, std::stop_token stop) override;

private:
    template<typename Response>
    using Kept = QHash<QUrl, Response>;

    /// What is kept, or what @p ask leads to, which is kept then.
    template<typename Response, typename Ask>
    QFuture<Result<Response>> fetch(const Kept<Response> &kept, const UrlRequest &request, Ask ask);
    void keep(const QUrl &address, const UrlResponse &response);
    void keep(const QUrl &address, const DownloadResponse &response);
    /// Notes that many bytes under @p address; false where there is no room, or nobody names the address.
    [[nodiscard]] bool reserve(const QUrl &address, qint64 size);

    std::shared_ptr<UrlSession> m_session;
    QSet<QUrl> m_addresses; ///< Of the present round.
    QHash<QUrl, qint64> m_sizes; ///< Of what is kept, in bytes.
    Kept<UrlResponse> m_data;
    Kept<DownloadResponse> m_downloads;
};

} // namespace Quillmere
