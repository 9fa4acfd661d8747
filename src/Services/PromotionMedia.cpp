#include "Services/PromotionMedia.h"

#include <QFileInfo>

#include <numeric>

namespace Quillmere {

namespace {

bool isSuccess(int status)
{
    return status >= 200 && status <= 299;
}

qint64 sizeOf(const UrlResponse &response)
{
    return response.body.size();
}

qint64 sizeOf(const DownloadResponse &response)
{
    return QFileInfo(response.file->location().toLocalFile()).size();
}

} // namespace

PromotionMedia::PromotionMedia(std::shared_ptr<UrlSession> session)
    : m_session(std::move(session))
{
}

void PromotionMedia::keepOnly(const QSet<QUrl> &addresses)
{
    m_addresses = addresses;
    const auto isForgotten = [&](const auto &each) { return !addresses.contains(each.key()); };
    erase_if(m_sizes, isForgotten);
    erase_if(m_data, isForgotten);
    erase_if(m_downloads, isForgotten);
}

bool PromotionMedia::reserve(const QUrl &address, qint64 size)
{
    if (!m_addresses.contains(address) || m_sizes.contains(address))
        return false;
    if (std::accumulate(m_sizes.cbegin(), m_sizes.cend(), size) > mostKept)
        return false;
    m_sizes.insert(address, size);
    return true;
}

QFuture<Result<UrlResponse>> PromotionMedia::data(const UrlRequest &request, std::stop_token stop)
{
    return fetch(m_data, request, [&] { return m_session->data(request, std::move(stop)); });
}

QFuture<Result<DownloadResponse>> PromotionMedia::download(const UrlRequest &request, std::stop_token stop)
{
    return fetch(m_downloads, request, [&] { return m_session->download(request, std::move(stop)); });
}

template<typename Response, typename Ask>
QFuture<Result<Response>> PromotionMedia::fetch(const Kept<Response> &kept, const UrlRequest &request, Ask ask)
{
    if (const auto found = kept.constFind(request.url); found != kept.constEnd())
        return QtFuture::makeReadyFuture(Result<Response>(*found));
    return ask().then([self = weak_from_this(), address = request.url](const Result<Response> &response) {
        const std::shared_ptr<PromotionMedia> media = self.lock();
        if (media && response && isSuccess(response.value().status))
            media->keep(address, response.value());
        return response;
    });
}

void PromotionMedia::keep(const QUrl &address, const UrlResponse &response)
{
    if (reserve(address, sizeOf(response)))
        m_data.insert(address, response);
}

void PromotionMedia::keep(const QUrl &address, const DownloadResponse &response)
{
    if (reserve(address, sizeOf(response)))
        m_downloads.insert(address, response);
}

} // namespace Quillmere
