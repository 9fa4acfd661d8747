#pragma once

#include "Platform/UrlSession.h"

#include <QQuickAsyncImageProvider>

namespace Quillmere {

/// Serves pictures of other machines as `image://remote/<url>`, percent-encoded: the one way in which a screen gets
/// them. A single clear pixel stands for one that does not come. Each is fetched and decoded without keeping the screen
/// waiting, within the bounds of decodedPicture().
class RemoteImageProvider final : public QQuickAsyncImageProvider
{
public:
    /// @p session lives on the GUI thread.
    explicit RemoteImageProvider(std::shared_ptr<UrlSession> session);

    QQuickImageResponse *requestImageResponse(const QString &id, const QSize &requestedSize) override;

private:
    std::shared_ptr<UrlSession> m_session;
};

} // namespace Quillmere
