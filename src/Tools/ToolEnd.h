#pragma once

#include <QString>

namespace Quillmere {

/// How a program of this folder ends.
struct ToolEnd
{
    // sysexits.h has these two.
    static constexpr int wrongUse = 64;
    static constexpr int needsRoot = 77;

    int status = 0;
    QString message; ///< One text for standard error. Empty where there is nothing to say.

    bool operator==(const ToolEnd &) const = default;
};

} // namespace Quillmere
