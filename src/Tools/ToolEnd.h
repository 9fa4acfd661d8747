#pragma once

#include "Values/Failure.h"

#include <QString>

namespace Quillmere {

/// How a program of this folder ends.
struct ToolEnd
{
    // sysexits.h has these.
    static constexpr int wrongUse = 64;
    static constexpr int unavailable = 69;
    static constexpr int notBegun = 75; ///< Something was in the way of it, and nothing was changed.
    static constexpr int needsRoot = 77;

    int status = 0;
    QString message = {}; ///< One text for standard error. Empty where there is nothing to say.
    QString report = {}; ///< What was done, for standard output. Empty where that goes without saying.

    [[nodiscard]] static ToolEnd failed(const Failure &failure) { return {1, failure.detail}; }

    bool operator==(const ToolEnd &) const = default;
};

} // namespace Quillmere
