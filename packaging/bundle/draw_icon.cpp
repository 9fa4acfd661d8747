#include <QCoreApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <cstdio>

/// Draws an SVG file as a square PNG: `draw-icon SVG PIXELS PNG`.
int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const int side = arguments.value(2).toInt();
    QSvgRenderer drawing(arguments.value(1));
    if (arguments.size() != 4 || side < 1 || !drawing.isValid()) {
        std::fputs("usage: draw-icon SVG PIXELS PNG\n", stderr);
        return 2;
    }
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    drawing.render(&painter, QRectF(image.rect()));
    painter.end();
    return image.save(arguments.value(3)) ? 0 : 1;
}
