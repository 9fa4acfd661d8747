#pragma once

#include "Platform/UrlSession.h"

#include <QObject>

#include <stop_token>

namespace Quillmere {

/// The movie of a promotion. It is fetched whole before it plays, so that the player never goes to the network itself.
class AdvertisementMovie final : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QUrl source READ source NOTIFY sourceChanged)

public:
    explicit AdvertisementMovie(std::shared_ptr<UrlSession> session, QObject *parent = nullptr);
    ~AdvertisementMovie() override;

    /// Fetches the movie at @p url in place of the one before.
    Q_INVOKABLE void fetch(const QUrl &url);
    /// A local file; empty as long as there is none, and for good when what came is no movie.
    [[nodiscard]] QUrl source() const { return m_file ? m_file->location() : QUrl(); }

Q_SIGNALS:
    void sourceChanged();

private:
    void setFile(std::shared_ptr<const DownloadedFile> file);

    std::shared_ptr<UrlSession> m_session;
    std::shared_ptr<const DownloadedFile> m_file;
    std::stop_source m_stop;
};

} // namespace Quillmere
