#pragma once

#include "Models/RawValue.h"
#include "Utilities/JsonValue.h"

#include <QDateTime>
#include <QStringList>
#include <QUuid>

namespace Quillmere {

// Each reads a value of exactly its own kind into @p target. False leaves the target as it was.

[[nodiscard]] bool decodeJson(const JsonValue &value, bool &target);
[[nodiscard]] bool decodeJson(const JsonValue &value, qint64 &target);
[[nodiscard]] bool decodeJson(const JsonValue &value, QString &target);
/// An array of texts alone.
[[nodiscard]] bool decodeJson(const JsonValue &value, QStringList &target);
/// The canonical form with four dashes, in either case.
[[nodiscard]] bool decodeJson(const JsonValue &value, QUuid &target);
/// Seconds since the beginning of 2001, UTC, taken to the nearest millisecond. One beyond the calendar, a quarter of
/// a million years away, is taken as the calendar's end.
[[nodiscard]] bool decodeJson(const JsonValue &value, QDateTime &target);

/// The stored text of one of the cases.
template<typename Enumeration>
    requires requires
    {
        RawValues<Enumeration>::cases;
    }
[[nodiscard]] bool decodeJson(const JsonValue &value, Enumeration &target)
{
    const std::optional<QString> text = value.string();
    const std::optional<Enumeration> found = text ? fromRawValue<Enumeration>(*text) : std::nullopt;
    if (found)
        target = *found;
    return found.has_value();
}

} // namespace Quillmere
