#pragma once

#include "Platform/Linux/TemporaryHome.h"

#include <functional>

#include <sys/types.h>

namespace Quillmere {

enum class Ending { Succeeded, Failed, Killed };

/// Asked at each system call that the program is about to make, with its place in their order, from 1, and the kernel's
/// number for it. Counting begins with the first that concerns the file system of the item. Answering false kills it.
using GoesOn = std::function<bool(int call, long number)>;

/// Runs `quillmere-trash` @p arguments with the home of @p home and holds it at each system call of its first thread.
[[nodiscard]] Ending runHeld(const TemporaryHome &home, const QList<QByteArray> &arguments, const GoesOn &goesOn);

/// Runs `quillmere-trash sync` @p paths and answers with the volumes that the kernel has seen onto disk by then, in
/// their order. That the program fails is a failure of the test.
[[nodiscard]] QList<dev_t> volumesSynchronized(const TemporaryHome &home, const QList<QByteArray> &paths);

} // namespace Quillmere
