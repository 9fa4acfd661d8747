#include "Platform/Linux/Tray/FigureDrawing.h"

#include <QFont>
#include <QFontMetricsF>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace Quillmere {

namespace {

constexpr int smallestSideWithPercent = 32;
constexpr qsizetype mostDigitsWithPercent = 2;
constexpr qreal percentWidthInCells = 0.8;
constexpr qreal percentHeight = 0.55; // Of a digit's.
constexpr qreal narrowest = 0.58; // Of a digit's own proportions.
constexpr qreal widest = 1.06;

/// Where the digits stand, in whole pixels, so that all of them are equally sharp.
struct Layout
{
    int left = 0;
    int cell = 0;
    int baseline = 0;
    int height = 0;
};

QFont digitFont()
{
    QFont font(u"Inter"_qs);
    font.setStyleHint(QFont::SansSerif);
    font.setWeight(QFont::Bold);
    font.setPixelSize(200);
    return font;
}

QPainterPath outline(const QString &text)
{
    QPainterPath path;
    path.addText(0, 0, digitFont(), text);
    return path;
}

QSizeF digitSize()
{
    const QRectF zero = outline(u"0"_qs).boundingRect();
    return {zero.width() * 1.12, zero.height()};
}

Layout layoutOf(qreal cells, int side)
{
    const QSizeF digit = digitSize();
    const int margin = std::max(1, side / 14);
    Layout layout;
    layout.cell = static_cast<int>((side - 2 * margin) / cells);
    const qreal tallest = layout.cell * digit.height() / digit.width() / narrowest;
    layout.height = static_cast<int>(std::min(tallest, side * 0.64));
    const int widestCell = static_cast<int>(layout.height * digit.width() / digit.height() * widest);
    layout.cell = std::min(layout.cell, std::max(widestCell, 1));
    layout.left = qRound((side - layout.cell * cells) / 2);
    layout.baseline = (side + layout.height) / 2;
    return layout;
}

/// Scales @p path to @p height and the width of a cell, and stands it on the baseline in the middle of the cell.
QPainterPath placed(const QPainterPath &path, const Layout &layout, qreal left)
{
    const QSizeF digit = digitSize();
    const QRectF bounds = path.boundingRect();
    QTransform transform;
    transform.translate(left + layout.cell / 2.0, layout.baseline);
    transform.scale(layout.cell / digit.width(), layout.height / digit.height());
    transform.translate(-bounds.center().x(), -std::max(bounds.bottom(), 0.0));
    return transform.map(path);
}

QPainterPath placedPercent(const Layout &layout, qreal left)
{
    const QPainterPath path = outline(u"%"_qs);
    const QRectF bounds = path.boundingRect();
    const qreal width = layout.cell * percentWidthInCells;
    QTransform transform;
    transform.translate(left, layout.baseline - layout.height);
    transform.scale(width / bounds.width(), layout.height * percentHeight / bounds.height());
    transform.translate(-bounds.left(), -bounds.top());
    return transform.map(path);
}

void drawGround(QPainter &painter, int side)
{
    QLinearGradient water(0, 0, 0, side);
    water.setColorAt(0, QColor(0x0E, 0x7B, 0x8B));
    water.setColorAt(1, QColor(0x0B, 0x66, 0x76));
    painter.setBrush(water);
    painter.drawRoundedRect(QRectF(0, 0, side, side), side * 0.22, side * 0.22);
}

} // namespace

QImage drawnFigure(const QString &text, int side)
{
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    drawGround(painter, side);

    const QString digits = text.endsWith(u'%') ? text.chopped(1) : text;
    const bool hasPercent = digits != text && side >= smallestSideWithPercent && digits.size() <= mostDigitsWithPercent;
    const Layout layout = layoutOf(static_cast<qreal>(digits.size()) + (hasPercent ? percentWidthInCells : 0.0), side);
    painter.setBrush(Qt::white);
    qreal left = layout.left;
    for (const QChar digit : digits) {
        painter.drawPath(placed(outline(digit), layout, left));
        left += layout.cell;
    }
    if (hasPercent)
        painter.drawPath(placedPercent(layout, left));
    return image;
}

} // namespace Quillmere
