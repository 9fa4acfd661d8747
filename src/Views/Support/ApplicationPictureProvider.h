#pragma once

#include <QQuickImageProvider>

namespace Quillmere {

/// Serves pictures of applications as `image://application-picture/<path>?<name>`, both percent-encoded. Where there is
/// none that an icon could be made of, a tile with the first letter of the application's name. Pictures are anybody's
/// making, so they are read on a thread of their own, and none that is large.
class ApplicationPictureProvider final : public QQuickImageProvider
{
public:
    ApplicationPictureProvider();

    /// Whether there is such a picture, as far as its beginning says.
    [[nodiscard]] static bool hasPicture(const QString &path);

    QImage requestImage(const QString &id, QSize *size, const QSize &requestedSize) override;
};

} // namespace Quillmere
