#pragma once

#include <QByteArray>

#include <optional>

namespace Quillmere {

/// The text of a JSON file as UTF-8 without a byte order mark. UTF-16 and UTF-32 are known by their mark, or by where
/// the first characters, which are ASCII in any JSON text, have their zero bytes. Nothing where UTF-16 or UTF-32
/// is malformed; UTF-8 is passed on unchecked.
[[nodiscard]] std::optional<QByteArray> jsonTextAsUtf8(const QByteArray &bytes);

} // namespace Quillmere
