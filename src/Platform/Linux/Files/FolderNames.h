#pragma once

#include <QByteArray>
#include <QList>

#include <optional>

namespace Quillmere {

/// The names in @p folder, open for reading, in the order of reading and without "." and "..". Nothing on failure, with
/// the reason in errno. Once for each opening: the next reading begins where this one has ended.
[[nodiscard]] std::optional<QList<QByteArray>> namesIn(int folder);

} // namespace Quillmere
