#include "ViewModels/AdvertisementMovie.h"

#include "Utilities/MovieStructure.h"

#include <QFile>

namespace Quillmere {

namespace {

constexpr qint64 longestMovie = 32 * 1024 * 1024;

/// What is none is kept from the player: it knows playlists too, and movies that lead to other files and hosts.
bool isMovie(const DownloadedFile &file)
{
    QFile opened(file.location().toLocalFile());
    return opened.open(QIODevice::ReadOnly) && isSelfContainedMovie(opened);
}

} // namespace

AdvertisementMovie::AdvertisementMovie(std::shared_ptr<UrlSession> session, QObject *parent)
    : QObject(parent)
    , m_session(std::move(session))
{
}

AdvertisementMovie::~AdvertisementMovie()
{
    m_stop.request_stop();
}

void AdvertisementMovie::fetch(const QUrl &url)
{
    m_stop.request_stop();
    m_stop = std::stop_source();
    setFile(nullptr);
    UrlRequest request;
    request.url = url;
    request.mostBytes = longestMovie;
    const std::stop_token stop = m_stop.get_token();
    m_session->download(request, stop).then(this, [this, stop](const Result<DownloadResponse> &response) {
        if (stop.stop_requested() || !response)
            return;
        const DownloadResponse &answer = response.value();
        if (answer.status >= 200 && answer.status <= 299 && isMovie(*answer.file))
            setFile(answer.file);
    });
}

void AdvertisementMovie::setFile(std::shared_ptr<const DownloadedFile> file)
{
    if (m_file == file)
        return;
    m_file = std::move(file);
    Q_EMIT sourceChanged();
}

} // namespace Quillmere
