#pragma once

#include "Values/Result.h"

#include <QByteArray>
#include <QFuture>
#include <QUrl>

#include <chrono>
#include <memory>
#include <stop_token>

namespace Quillmere {

/// What is to be fetched, and within which bounds.
struct UrlRequest
{
    QUrl url; ///< Nothing but https is fetched.
    std::chrono::milliseconds timeout{60'000}; ///< How long may pass without a single byte.
    /// How long the whole may take: a host that sends a byte now and then never lets the time between two run out.
    std::chrono::milliseconds deadline{120'000};
    qint64 mostBytes = 0; ///< A longer body fails the request.
    bool ignoresCache = false; ///< Asks those on the way, too, for what the host has now.

    bool operator==(const UrlRequest &) const = default;
};

/// What a host answered, whatever its status.
struct UrlResponse
{
    int status = 0; ///< Of HTTP.
    QByteArray body;

    bool operator==(const UrlResponse &) const = default;
};

/// What was downloaded, as a file for those who read files alone. It goes with this object, and with the process at the
/// latest.
class DownloadedFile
{
public:
    virtual ~DownloadedFile() = default;

    /// A local file, which only this process may be able to open.
    [[nodiscard]] virtual QUrl location() const = 0;
};

/// What a host answered, its body in a file.
struct DownloadResponse
{
    int status = 0; ///< Of HTTP.
    std::shared_ptr<const DownloadedFile> file; ///< Never null.
};

/// Fetches from the network: the one way that the program has there. It leaves no trace on disk, and sends and keeps no
/// cookies. Redirections are followed as long as they stay with https. Fails with NotSupported for any other scheme,
/// with NoSpace for a body that is too long, with Cancelled once @p stop is requested, and with Other or NotFound
/// where the host cannot be reached, is not who it says, or lets too much time pass.
/// GUI thread only, where the answers arrive too: each future is finished in the end, also when the session goes.
class UrlSession
{
public:
    virtual ~UrlSession() = default;

    [[nodiscard]] virtual QFuture<Result<UrlResponse>> data(const UrlRequest &request, std::stop_token stop) = 0;
    [[nodiscard]] virtual QFuture<Result<DownloadResponse>> download(const UrlRequest &request, std::stop_token stop)
        = 0;
};

} // namespace Quillmere
