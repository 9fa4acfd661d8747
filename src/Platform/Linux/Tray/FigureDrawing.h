#pragma once

#include <QImage>
#include <QString>

namespace Quillmere {

/// @p text, such as "42%", in a square of @p side pixels on a ground of its own, its digits as large as they fit.
/// The percent sign is left out where it would cost them too much.
[[nodiscard]] QImage drawnFigure(const QString &text, int side);

} // namespace Quillmere
