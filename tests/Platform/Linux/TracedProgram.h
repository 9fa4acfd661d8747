#pragma once

#include "Platform/Linux/TemporaryHome.h"

#include <functional>

namespace Quillmere {

enum class Ending { Succeeded, Failed, Killed };

/// Asked at each system call that the program is about to make, with its place in their order, from 1, and the kernel's
/// number for it. Counting begins with the first that concerns the file system of the item. Answering false kills it.
using GoesOn = std::function<bool(int call, long number)>;

/// Runs `quillmere-trash` @p arguments with the home of @p home and holds it at each system call of its first thread.
[[nodiscard]] Ending runHeld(const TemporaryHome &home, const QList<QByteArray> &arguments, const GoesOn &goesOn);

} // namespace Quillmere
