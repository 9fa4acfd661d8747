#pragma once

#include <QQuickImageProvider>

namespace Quillmere {

/// Serves the icons of applications as `image://application/<icon>?<name>`, both percent-encoded. The icon is a name of
/// the desktop's icon theme, or the absolute path of a picture. Where there is none, a tile with the first letter of
/// the application's name. GUI thread only.
class ApplicationIconProvider final : public QQuickImageProvider
{
public:
    ApplicationIconProvider();

    /// Whether there is a picture behind @p icon, and not only the letter.
    [[nodiscard]] static bool hasPicture(const QString &icon);

    QPixmap requestPixmap(const QString &id, QSize *size, const QSize &requestedSize) override;
};

} // namespace Quillmere
