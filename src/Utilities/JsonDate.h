#pragma once

#include <QDateTime>

namespace Quillmere {

// Dates are stored as seconds since 2001-01-01 00:00:00 UTC. A date to the millisecond comes back as it was.

[[nodiscard]] double referenceSeconds(const QDateTime &date);
/// UTC, to the nearest millisecond, within the calendar. @p seconds is a number.
[[nodiscard]] QDateTime dateFromReferenceSeconds(double seconds);

} // namespace Quillmere
