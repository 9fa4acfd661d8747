#include "Symbols/SymbolDrawing.h"

#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

namespace Quillmere {

namespace {

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

QImage transparentImage(const QSize &size)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

} // namespace

bool hasSymbol(const QString &name)
{
    return QFile::exists(drawingPath(name));
}

QImage drawnSymbol(const QString &name, const QColor &color, const QSize &size)
{
    QImage image = transparentImage(size);
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

QImage drawnProgramIcon(const QSize &size)
{
    QImage image = transparentImage(size);
    QPainter painter(&image);
    QSvgRenderer(u":/icon/quillmere.svg"_qs).render(&painter, QRectF(QPointF(), size));
    return image;
}

} // namespace Quillmere
