#pragma once

#include <chrono>
#include <functional>

namespace Quillmere {

enum class ColorScheme { Light, Dark };

/// What the user told the desktop about looks. GUI thread only.
class DesktopAppearance
{
public:
    virtual ~DesktopAppearance() = default;

    /// Light where the desktop has no preference.
    [[nodiscard]] virtual ColorScheme colorScheme() const = 0;
    /// True when the desktop asks programs to do without animation.
    [[nodiscard]] virtual bool prefersReducedMotion() const = 0;
    /// Calls @p changed after each change of either, on the GUI thread. A second call replaces the first.
    virtual void observe(std::function<void()> changed) = 0;
    /// Waits until the desktop has said all that it was asked, at most for @p patience, and handles no events
    /// meanwhile. What is not answered by then is told to the observer when it comes.
    virtual void awaitAnswers(std::chrono::milliseconds patience) = 0;
};

} // namespace Quillmere
