#include "Views/Support/SymbolImageProvider.h"

#include "Symbols/SymbolDrawing.h"

#include <QColor>
#include <QMutexLocker>
#include <QUrlQuery>

namespace Quillmere {

namespace {

constexpr qsizetype cacheBytes = 8 * 1024 * 1024;

} // namespace

SymbolImageProvider::SymbolImageProvider()
    : QQuickImageProvider(QQuickImageProvider::Image)
    , m_rendered(cacheBytes)
{
}

QImage SymbolImageProvider::requestImage(const QString &id, QSize *size, const QSize &requestedSize)
{
    const QSize side(requestedSize.width() > 0 ? requestedSize.width() : gridSide,
                     requestedSize.height() > 0 ? requestedSize.height() : gridSide);
    if (size)
        *size = side;

    const QString key = u"%1@%2x%3"_qs.arg(id).arg(side.width()).arg(side.height());
    const QMutexLocker locker(&m_lock);
    if (const QImage *known = m_rendered.object(key))
        return *known;

    const QUrlQuery query(id.section(u'?', 1));
    const QColor color(u'#' + query.queryItemValue(u"color"_qs));
    const QImage image = drawnSymbol(id.section(u'?', 0, 0), color.isValid() ? color : QColor(Qt::black), side);
    m_rendered.insert(key, new QImage(image), image.sizeInBytes());
    return image;
}

} // namespace Quillmere
