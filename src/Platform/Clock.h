#pragma once

#include <QDateTime>

namespace Quillmere {

/// What time it is. Safe to call from any thread.
class Clock
{
public:
    virtual ~Clock() = default;

    /// UTC, to the millisecond.
    [[nodiscard]] virtual QDateTime now() const = 0;
};

} // namespace Quillmere
