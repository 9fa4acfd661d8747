#pragma once

#include <stop_token>

namespace Quillmere {

/// The latest of a screen's tasks of one kind: an earlier one that ends late is known by its token, and changes
/// nothing. Each is asked to stop when the next one begins, and the last one when its screen goes; what must come to
/// its end does not look at its token. GUI thread only.
class LatestTask
{
public:
    LatestTask() = default;
    ~LatestTask() { stop(); }
    LatestTask(const LatestTask &) = delete;
    LatestTask &operator=(const LatestTask &) = delete;

    /// Stops the one before. The token may be used on any thread.
    [[nodiscard]] std::stop_token begin()
    {
        stop();
        m_source = {};
        return token();
    }
    void stop() { m_source.request_stop(); }
    /// The latest goes on to its end, whatever becomes of the screen.
    void letGo() { m_source = std::stop_source(std::nostopstate); }

    /// Of the latest, stopped or not. Equal to no token of an earlier one.
    [[nodiscard]] std::stop_token token() const { return m_source.get_token(); }
    [[nodiscard]] bool isLatest(const std::stop_token &token) const { return token == m_source.get_token(); }

private:
    std::stop_source m_source;
};

} // namespace Quillmere
