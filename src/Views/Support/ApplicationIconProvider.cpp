#include "Views/Support/ApplicationIconProvider.h"

#include "Views/Support/LetterTile.h"

#include <QIcon>
#include <QUrl>

namespace Quillmere {

ApplicationIconProvider::ApplicationIconProvider()
    : QQuickImageProvider(QQuickImageProvider::Pixmap)
{
}

QPixmap ApplicationIconProvider::requestPixmap(const QString &id, QSize *size, const QSize &requestedSize)
{
    const auto decoded = [](const QString &part) { return QUrl::fromPercentEncoding(part.toUtf8()); };
    const QSize side = iconSize(requestedSize);
    if (size)
        *size = side;
    const QString name = decoded(id.section(u'?', 0, 0));
    const QPixmap found = name.isEmpty() ? QPixmap() : QIcon::fromTheme(name).pixmap(side, 1.0);
    return found.isNull() ? QPixmap::fromImage(letterTile(decoded(id.section(u'?', 1)), side)) : found;
}

} // namespace Quillmere
