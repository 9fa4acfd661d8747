#include "Views/Support/ApplicationIconProvider.h"

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QIcon>
#include <QImageReader>
#include <QPainter>
#include <QTextBoundaryFinder>
#include <QUrl>

#include <algorithm>
#include <array>

namespace Quillmere {

namespace {

constexpr int usualSide = 32;
// Pictures of applications are small; whatever is larger is no icon.
constexpr qint64 mostBytes = 4 * 1024 * 1024;

// White reads on each of them, and each on light and on dark ground.
constexpr std::array<QRgb, 6> tileColors = {0xff2b74d8, 0xff23814a, 0xff8450cc, 0xffb85a08, 0xff5d6d73, 0xff0b7f7c};

QString decoded(const QString &part)
{
    return QUrl::fromPercentEncoding(part.toUtf8());
}

QPixmap pictureAt(const QString &path, const QSize &size)
{
    const QFileInfo file(path);
    // A pipe or a device would have the reader wait.
    if (!file.isFile() || file.size() > mostBytes)
        return {};
    QImageReader reader(path);
    const QSize own = reader.size();
    reader.setScaledSize(own.isValid() ? own.scaled(size, Qt::KeepAspectRatio) : size);
    return QPixmap::fromImage(reader.read());
}

QPixmap icon(const QString &name, const QSize &size)
{
    if (name.isEmpty())
        return {};
    return QDir::isAbsolutePath(name) ? pictureAt(name, size) : QIcon::fromTheme(name).pixmap(size, 1.0);
}

/// A tile with the first letter of @p name, always in the same colour for the same name.
QPixmap letterTile(const QString &name, const QSize &size)
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
    return QPixmap::fromImage(image);
}

} // namespace

ApplicationIconProvider::ApplicationIconProvider()
    : QQuickImageProvider(QQuickImageProvider::Pixmap)
{
}

bool ApplicationIconProvider::hasPicture(const QString &name)
{
    return !icon(name, {usualSide, usualSide}).isNull();
}

QPixmap ApplicationIconProvider::requestPixmap(const QString &id, QSize *size, const QSize &requestedSize)
{
    const QSize side(requestedSize.width() > 0 ? requestedSize.width() : usualSide,
                     requestedSize.height() > 0 ? requestedSize.height() : usualSide);
    if (size)
        *size = side;
    const QPixmap found = icon(decoded(id.section(u'?', 0, 0)), side);
    return found.isNull() ? letterTile(decoded(id.section(u'?', 1)), side) : found;
}

} // namespace Quillmere
