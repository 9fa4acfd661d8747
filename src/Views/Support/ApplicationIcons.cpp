#include "Views/Support/ApplicationIcons.h"

#include "Views/Support/ApplicationPictureProvider.h"

#include <QDir>
#include <QIcon>
#include <QUrl>

namespace Quillmere {

bool ApplicationIcons::has(const QString &icon) const
{
    return QDir::isAbsolutePath(icon) ? ApplicationPictureProvider::hasPicture(icon)
                                      : !icon.isEmpty() && !QIcon::fromTheme(icon).isNull();
}

QString ApplicationIcons::source(const QString &icon, const QString &name) const
{
    const auto encoded = [](const QString &text) { return QString::fromLatin1(QUrl::toPercentEncoding(text)); };
    const QString provider = QDir::isAbsolutePath(icon) ? u"application-picture"_qs : u"application"_qs;
    return u"image://%1/%2?%3"_qs.arg(provider, encoded(icon), encoded(name));
}

} // namespace Quillmere
