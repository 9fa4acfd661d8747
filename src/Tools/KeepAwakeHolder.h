#pragma once

#include "Values/Result.h"

namespace Quillmere {

/// Something that outlives this program and holds the one inhibitor of ours. There is one at most on a machine.
class KeepAwakeHolder
{
public:
    virtual ~KeepAwakeHolder() = default;

    [[nodiscard]] virtual Result<bool> isRunning() const = 0;
    /// Fails with AlreadyExists beside a running one.
    [[nodiscard]] virtual Result<void> start() const = 0;
    /// Ends the running one and nothing else, and waits for its end. No running one is no failure.
    [[nodiscard]] virtual Result<void> stop() const = 0;
};

} // namespace Quillmere
