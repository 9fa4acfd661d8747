#include "Views/Support/RemoteImageProvider.h"

#include "Utilities/BackgroundWork.h"
#include "Views/Support/RemotePicture.h"

#include <QCoreApplication>

#include <mutex>

namespace Quillmere {

namespace {

constexpr qint64 longestPicture = 8 * 1024 * 1024;

QImage nothing()
{
    QImage image(1, 1, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

/// One picture that is waited for. Ends once: with the picture, without one, or because nobody waits any more.
class RemoteImageResponse final : public QQuickImageResponse
{
public:
    /// What the work knows of the response, which may go before it.
    struct Link
    {
        std::mutex lock; ///< Around the response.
        RemoteImageResponse *response = nullptr; ///< Null once it has ended.
        std::stop_source stop;

        void end(const QImage &picture)
        {
            const std::scoped_lock held(lock);
            if (RemoteImageResponse *const waiting = std::exchange(response, nullptr)) {
                waiting->m_picture = picture;
                QMetaObject::invokeMethod(waiting, &QQuickImageResponse::finished, Qt::QueuedConnection);
            }
        }
    };

    RemoteImageResponse() { m_link->response = this; }
    ~RemoteImageResponse() override
    {
        const std::scoped_lock held(m_link->lock);
        m_link->response = nullptr;
    }

    [[nodiscard]] std::shared_ptr<Link> link() const { return m_link; }

    [[nodiscard]] QQuickTextureFactory *textureFactory() const override
    {
        // The engine would print a line for an error, and what fails here is to fail silently.
        return QQuickTextureFactory::textureFactoryForImage(m_picture.isNull() ? nothing() : m_picture);
    }

    void cancel() override
    {
        m_link->end({});
        QMetaObject::invokeMethod(QCoreApplication::instance(), [link = m_link] { link->stop.request_stop(); });
    }

private:
    const std::shared_ptr<Link> m_link = std::make_shared<Link>();
    QImage m_picture; ///< Null while there is none, and when there is none.
};

QImage pictureIn(const Result<UrlResponse> &response)
{
    if (!response || response.value().status < 200 || response.value().status > 299)
        return {};
    return decodedPicture(response.value().body);
}

/// On the GUI thread.
void fetch(UrlSession &session, const QUrl &url, const std::shared_ptr<RemoteImageResponse::Link> &link)
{
    UrlRequest request;
    request.url = url;
    request.mostBytes = longestPicture;
    session.data(request, link->stop.get_token()).then(&backgroundPool(), [link](const Result<UrlResponse> &response) {
        link->end(pictureIn(response));
    });
}

} // namespace

RemoteImageProvider::RemoteImageProvider(std::shared_ptr<UrlSession> session)
    : m_session(std::move(session))
{
}

QQuickImageResponse *RemoteImageProvider::requestImageResponse(const QString &id, const QSize &)
{
    auto *const response = new RemoteImageResponse;
    const QUrl url(QUrl::fromPercentEncoding(id.toUtf8()));
    QMetaObject::invokeMethod(
        QCoreApplication::instance(),
        [session = m_session, url, link = response->link()] { fetch(*session, url, link); }, Qt::QueuedConnection);
    return response;
}

} // namespace Quillmere
