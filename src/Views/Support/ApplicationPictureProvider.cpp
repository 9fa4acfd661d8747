#include "Views/Support/ApplicationPictureProvider.h"

#include "Views/Support/LetterTile.h"

#include <QFileInfo>
#include <QImageReader>
#include <QUrl>

namespace Quillmere {

namespace {

// Pictures of applications are small; whatever is larger is no icon.
constexpr qint64 mostBytes = 4 * 1024 * 1024;
// A few bytes can stand for a picture that fills the memory.
constexpr int mostSide = 2048;

bool isPicture(const QString &path, QImageReader &reader)
{
    const QFileInfo file(path);
    // A pipe or a device would have the reader wait.
    if (!file.isFile() || file.size() > mostBytes)
        return false;
    reader.setFileName(path);
    // Otherwise every reader there is looks at the file first.
    reader.setFormat(file.suffix().toLower().toLatin1());
    const QSize own = reader.size();
    return !own.isEmpty() && own.width() <= mostSide && own.height() <= mostSide;
}

QImage pictureAt(const QString &path, const QSize &size)
{
    QImageReader reader;
    if (!isPicture(path, reader))
        return {};
    reader.setScaledSize(reader.size().scaled(size, Qt::KeepAspectRatio));
    return reader.read();
}

} // namespace

ApplicationPictureProvider::ApplicationPictureProvider()
    : QQuickImageProvider(QQuickImageProvider::Image, QQuickImageProvider::ForceAsynchronousImageLoading)
{
}

bool ApplicationPictureProvider::hasPicture(const QString &path)
{
    QImageReader reader;
    return isPicture(path, reader);
}

QImage ApplicationPictureProvider::requestImage(const QString &id, QSize *size, const QSize &requestedSize)
{
    const auto decoded = [](const QString &part) { return QUrl::fromPercentEncoding(part.toUtf8()); };
    const QSize side = iconSize(requestedSize);
    if (size)
        *size = side;
    const QImage found = pictureAt(decoded(id.section(u'?', 0, 0)), side);
    return found.isNull() ? letterTile(decoded(id.section(u'?', 1)), side) : found;
}

} // namespace Quillmere
