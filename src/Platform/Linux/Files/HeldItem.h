#pragma once

#include "Platform/Linux/Files/FileIdentity.h"

#include <QByteArray>

#include <optional>

namespace Quillmere {

// What is asked of an item, or done to it, by a descriptor of any kind, O_PATH too: whatever comes to its name
// meanwhile, it is this one.

[[nodiscard]] bool isLink(int item);
[[nodiscard]] bool isFolder(int item);
/// What the link @p name in @p folder says, or with an empty name the link that @p folder itself is. Nothing on
/// failure, with the reason in errno.
[[nodiscard]] std::optional<QByteArray> textOfLink(int folder, const QByteArray &name);
/// True when the rights of what is no link are now @p mode; otherwise errno says why not.
[[nodiscard]] bool changeMode(int item, mode_t mode);
/// Whether @p wanted is @p folder or one of those above it. Nothing where the way up cannot be followed to its end,
/// with the reason in errno.
[[nodiscard]] std::optional<bool> isAtOrAbove(const FileIdentity &wanted, int folder);

} // namespace Quillmere
