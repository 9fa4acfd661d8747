#pragma once

#include <QImage>
#include <QString>

namespace Quillmere {

/// A tile with the first letter of @p name, always in the same colour for the same name. Any thread.
[[nodiscard]] QImage letterTile(const QString &name, const QSize &size);

/// The size of an icon that was asked for in @p requested, of which either side may be left open.
[[nodiscard]] QSize iconSize(const QSize &requested);

} // namespace Quillmere
