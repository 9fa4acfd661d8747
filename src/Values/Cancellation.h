#pragma once

#include <stop_token>
#include <utility>

namespace Quillmere {

/// The two independent ways in which a scan is stopped: its own flag, and the task that runs it.
/// Copied like a value; asking costs two atomic reads and may be done for every entry, on any thread.
class Cancellation
{
public:
    /// Never requested.
    Cancellation() = default;
    explicit Cancellation(std::stop_token flag, std::stop_token task = {})
        : m_flag(std::move(flag))
        , m_task(std::move(task))
    {
    }

    [[nodiscard]] bool isRequested() const { return m_flag.stop_requested() || m_task.stop_requested(); }

private:
    std::stop_token m_flag;
    std::stop_token m_task;
};

} // namespace Quillmere
