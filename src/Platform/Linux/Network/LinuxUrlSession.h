#pragma once

#include "Platform/UrlSession.h"

#include <QSslConfiguration>

#include <optional>

class QObject;

namespace Quillmere {

/// The network as this machine reaches it. Nothing of it is loaded or kept between two requests.
/// A host under `.example` or `.invalid` cannot exist, so nobody is asked for it.
class LinuxUrlSession final : public UrlSession
{
public:
    /// Trusts whom @p trust names, or else whom the system does.
    explicit LinuxUrlSession(std::optional<QSslConfiguration> trust = std::nullopt);
    ~LinuxUrlSession() override;

    [[nodiscard]] QFuture<Result<UrlResponse>> data(const UrlRequest &request, std::stop_token stop) override;
    [[nodiscard]] QFuture<Result<DownloadResponse>> download(const UrlRequest &request, std::stop_token stop) override;

private:
    [[nodiscard]] QSslConfiguration trust() const;

    std::optional<QSslConfiguration> m_trust;
    std::unique_ptr<QObject> m_transfers; ///< Parent of those on their way.
};

} // namespace Quillmere
