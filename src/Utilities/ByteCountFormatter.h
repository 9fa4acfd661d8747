#pragma once

#include "Models/Language.h"

#include <QString>

namespace Quillmere {

/// File counts in units of 1,000 bytes, as sizes on disk and rates are shown; Memory in units of 1,024.
/// Both use the same names of units.
enum class ByteCountStyle { File, Memory };

/// The text of @p bytes in @p language, which is never Language::System: whole bytes and KB, MB with at most one digit
/// behind the point, larger units with at most two, final zeros dropped, zero spelled out. A number that would round up
/// to the next unit is shown in that unit. Any thread.
[[nodiscard]] QString formatByteCount(qint64 bytes, ByteCountStyle style, Language language);
/// The File style without any blank, so that number and unit stand together.
[[nodiscard]] QString formatCompactByteCount(qint64 bytes, Language language);

/// The File style in the language of the screens. Any thread.
[[nodiscard]] QString formatByteCount(qint64 bytes);
/// A rate, the File style with "/s" behind it. Any thread.
[[nodiscard]] QString formatByteRate(quint64 bytesPerSecond);
/// The Memory style in the language of the screens. Any thread.
[[nodiscard]] QString formatMemoryByteCount(qint64 bytes);
/// The compact form in the language of the screens. Any thread.
[[nodiscard]] QString formatCompactByteCount(qint64 bytes);

} // namespace Quillmere
