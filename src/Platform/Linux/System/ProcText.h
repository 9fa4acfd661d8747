#pragma once

#include <QByteArrayView>
#include <QList>

#include <optional>

namespace Quillmere {

/// The lines of @p text that are whole: one that does not end is one whose last number may not be either.
[[nodiscard]] QList<QByteArrayView> wholeLines(QByteArrayView text);

/// What stands between blanks, however many.
[[nodiscard]] QList<QByteArrayView> fieldsOf(QByteArrayView line);

/// Decimal digits alone, with no sign; nothing when there is anything else, or more than 64 bits hold.
[[nodiscard]] std::optional<quint64> wholeNumber(QByteArrayView field);

} // namespace Quillmere
