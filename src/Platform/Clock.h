#pragma once

#include <QDateTime>

#include <chrono>

namespace Quillmere {

/// What time it is, and how much of it goes by. Safe to call from any thread.
class Clock
{
public:
    virtual ~Clock() = default;

    /// UTC, to the millisecond.
    [[nodiscard]] virtual QDateTime now() const = 0;
    /// Since a moment that stays the same while the program runs. It never goes back, whoever sets the clock, and
    /// stands still while the machine sleeps.
    [[nodiscard]] virtual std::chrono::milliseconds elapsed() const = 0;
};

} // namespace Quillmere
