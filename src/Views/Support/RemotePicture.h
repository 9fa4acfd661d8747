#pragma once

#include <QByteArray>
#include <QImage>

namespace Quillmere {

/// The picture in @p data, no larger than a promotion needs on the sharpest screen. Null for anything but a JPEG, PNG,
/// GIF or WebP picture of a size that a promotion may have. Any thread.
[[nodiscard]] QImage decodedPicture(const QByteArray &data);

} // namespace Quillmere
