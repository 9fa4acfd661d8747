#pragma once

#include <QIcon>
#include <QImage>
#include <QList>

namespace Quillmere {

/// Sides in pixels of the squares that a status bar may ask for.
[[nodiscard]] const QList<int> &statusItemIconSides();

/// The program's icon, or, where @p title is not empty, its figure on the icon's ground: bars squeeze what is not
/// square, so nothing fits beside. Drawn anew at each size and pixel ratio that is asked for. GUI thread only.
[[nodiscard]] QIcon statusItemIcon(const QString &title);

/// The same as one picture of @p side pixels.
[[nodiscard]] QImage statusItemPicture(const QString &title, int side);

} // namespace Quillmere
