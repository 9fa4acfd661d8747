#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <optional>

namespace Quillmere {

// Each takes the text of a number that is well-formed JSON.

/// Exact, without a detour over floating point. Nothing for a number with a fraction, or beyond 64 bits.
[[nodiscard]] std::optional<qint64> integerFromJson(QByteArrayView number);
/// The nearest value. Nothing for one too large, or so small that zero would be the nearest.
[[nodiscard]] std::optional<double> doubleFromJson(QByteArrayView number);

/// The shortest text that reads back as @p value, which is finite; whole numbers have no point.
[[nodiscard]] QByteArray jsonFromDouble(double value);

} // namespace Quillmere
