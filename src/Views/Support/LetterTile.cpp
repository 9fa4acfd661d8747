#include "Views/Support/LetterTile.h"

#include <QGuiApplication>
#include <QPainter>
#include <QTextBoundaryFinder>

#include <algorithm>
#include <array>

namespace Quillmere {

namespace {

constexpr int usualSide = 32;

// White reads on each of them, and each on light and on dark ground.
constexpr std::array<QRgb, 6> tileColors = {0xff2b74d8, 0xff23814a, 0xff8450cc, 0xffb85a08, 0xff5d6d73, 0xff0b7f7c};

} // namespace

QImage letterTile(const QString &name, const QSize &size)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor::fromRgb(tileColors[qHash(name, 0) % tileColors.size()]));
    const double radius = size.height() * 7.0 / 26.0;
    painter.drawRoundedRect(QRectF(QPointF(), size), radius, radius);

    QFont font = QGuiApplication::font();
    font.setFamilies({u"Inter"_qs, font.family()});
    font.setPixelSize(size.height() / 2);
    font.setWeight(QFont::Bold);
    painter.setFont(font);
    painter.setPen(Qt::white);
    const QString trimmed = name.trimmed();
    const auto letter = QTextBoundaryFinder(QTextBoundaryFinder::Grapheme, trimmed).toNextBoundary();
    painter.drawText(image.rect(), Qt::AlignCenter, trimmed.first(std::max<qsizetype>(letter, 0)).toUpper());
    return image;
}

QSize iconSize(const QSize &requested)
{
    return {requested.width() > 0 ? requested.width() : usualSide,
            requested.height() > 0 ? requested.height() : usualSide};
}

} // namespace Quillmere
