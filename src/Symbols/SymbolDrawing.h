#pragma once

#include <QColor>
#include <QImage>
#include <QSize>
#include <QString>

namespace Quillmere {

[[nodiscard]] bool hasSymbol(const QString &name);

/// The drawing of that name in one colour, at the pixels asked for. An unknown name is a transparent picture.
/// Any thread.
[[nodiscard]] QImage drawnSymbol(const QString &name, const QColor &color, const QSize &size);

/// The program's own icon, in its colours. Any thread.
[[nodiscard]] QImage drawnProgramIcon(const QSize &size);

} // namespace Quillmere
