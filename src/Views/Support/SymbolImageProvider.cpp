#include "Views/Support/SymbolImageProvider.h"

#include <QColor>
#include <QFile>
#include <QMutexLocker>
#include <QPainter>
#include <QSvgRenderer>
#include <QUrlQuery>

namespace Quillmere {

namespace {

constexpr qsizetype cacheBytes = 8 * 1024 * 1024;

QString drawingPath(const QString &name)
{
    return u":/symbols/%1.svg"_qs.arg(name);
}

/// The drawing in opaque @p color; empty when there is none of that name.
QByteArray drawing(const QString &name, const QColor &color)
{
    QFile file(drawingPath(name));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return file.readAll().replace("currentColor", color.name(QColor::HexRgb).toLatin1());
}

QImage render(const QString &name, const QColor &color, const QSize &size)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    const QByteArray source = drawing(name, color);
    if (source.isEmpty())
        return image;

    QPainter painter(&image);
    QSvgRenderer(source).render(&painter, QRectF(QPointF(), size));
    // Strokes overlap, so a translucent colour thins the finished picture rather than each stroke.
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.fillRect(image.rect(), QColor(0, 0, 0, color.alpha()));
    return image;
}

} // namespace

SymbolImageProvider::SymbolImageProvider()
    : QQuickImageProvider(QQuickImageProvider::Image)
    , m_rendered(cacheBytes)
{
}

bool SymbolImageProvider::hasSymbol(const QString &name)
{
    return QFile::exists(drawingPath(name));
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
    const QImage image = render(id.section(u'?', 0, 0), color.isValid() ? color : QColor(Qt::black), side);
    m_rendered.insert(key, new QImage(image), image.sizeInBytes());
    return image;
}

} // namespace Quillmere
