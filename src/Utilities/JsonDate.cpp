#include "Utilities/JsonDate.h"

#include <algorithm>
#include <cmath>

namespace Quillmere {

namespace {

// 2001-01-01 00:00:00 UTC, counted from 1970.
constexpr qint64 referenceMilliseconds = 978'307'200'000;
// A quarter of a million years either way, where every millisecond is still a whole number of its own.
constexpr double mostMilliseconds = 8.64e15;

} // namespace

double referenceSeconds(const QDateTime &date)
{
    return static_cast<double>(date.toMSecsSinceEpoch() - referenceMilliseconds) / 1000.0;
}

QDateTime dateFromReferenceSeconds(double seconds)
{
    const double milliseconds = std::clamp(std::round(seconds * 1000.0), -mostMilliseconds, mostMilliseconds);
    return QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(milliseconds) + referenceMilliseconds, Qt::UTC);
}

} // namespace Quillmere
