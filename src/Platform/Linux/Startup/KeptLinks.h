#pragma once

#include "Values/FilePath.h"
#include "Values/Result.h"

#include <functional>

namespace Quillmere {

/// Runs @p work, which may take away the link @p name of @p folder, and puts that link there again, unless something
/// stands there then. While it is owed, a hidden link beside it says so, which outlives a program that is killed at any
/// moment. Fails, without the work, where that cannot be noted. Where no such link stands, it is the work alone.
[[nodiscard]] Result<void> keepingLink(const FilePath &folder, const QByteArray &name,
                                       const std::function<Result<void>()> &work);

/// Puts the links of @p folder there again that a program that was killed has left owed. One at work is left alone.
void giveBackOwedLinks(const FilePath &folder);

} // namespace Quillmere
