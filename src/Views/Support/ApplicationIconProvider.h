#pragma once

#include <QQuickImageProvider>

namespace Quillmere {

/// Serves the icons of applications as `image://application/<icon>?<name>`, both percent-encoded. The icon is a name of
/// the desktop's icon theme. Where there is none, a tile with the first letter of the application's name. GUI thread
/// only, as the theme is.
class ApplicationIconProvider final : public QQuickImageProvider
{
public:
    ApplicationIconProvider();

    QPixmap requestPixmap(const QString &id, QSize *size, const QSize &requestedSize) override;
};

} // namespace Quillmere
