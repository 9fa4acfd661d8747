#pragma once

#include <QByteArray>

namespace Quillmere {

/// Moves the item @p from of @p fromFolder to the name @p to in @p toFolder, never onto anything that exists: then it
/// is EEXIST. 0, or an error number. Where the file system cannot promise it, the name is looked for just before.
[[nodiscard]] int moveWithoutReplacing(int fromFolder, const QByteArray &from, int toFolder, const QByteArray &to);

} // namespace Quillmere
