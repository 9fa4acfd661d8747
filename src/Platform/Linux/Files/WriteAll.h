#pragma once

#include <QByteArray>

namespace Quillmere {

/// Writes all of @p contents. 0, or an error number; a part may then be written.
[[nodiscard]] int writeAll(int file, QByteArrayView contents);

} // namespace Quillmere
