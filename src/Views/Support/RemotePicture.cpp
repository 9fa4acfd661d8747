#include "Views/Support/RemotePicture.h"

#include <QBuffer>
#include <QImageReader>

#include <algorithm>
#include <array>

namespace Quillmere {

namespace {

// The widest sidebar, less its margins, at three pixels to one.
constexpr QSize mostNeeded{780, 378};
// A few packed bytes can stand for any number of pixels.
constexpr qint64 mostPixels = 16'000'000;
// Only formats of pixels: drawings can name other files.
constexpr std::array<QByteArrayView, 4> formats = {"jpeg", "png", "gif", "webp"};

} // namespace

QImage decodedPicture(const QByteArray &data)
{
    QBuffer buffer;
    buffer.setData(data);
    QImageReader reader(&buffer);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    const QByteArray format = reader.format();
    const QSize size = reader.size();
    if (std::ranges::find(formats, QByteArrayView(format)) == formats.end() || size.isEmpty()
        || qint64(size.width()) * size.height() > mostPixels)
        return {};
    const QSize covering = size.scaled(mostNeeded, Qt::KeepAspectRatioByExpanding);
    if (covering.width() < size.width())
        reader.setScaledSize(covering);
    return reader.read();
}

} // namespace Quillmere
