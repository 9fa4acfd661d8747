#pragma once

#include <latch>
#include <memory>

namespace Quillmere {

/// Holds a worker up until the test lets it go on. Copied into the worker, so that it outlives the test's own scope.
class Gate
{
public:
    void wait() const { m_latch->wait(); }
    void open() const { m_latch->count_down(); }
    [[nodiscard]] bool isOpen() const { return m_latch->try_wait(); }

private:
    std::shared_ptr<std::latch> m_latch = std::make_shared<std::latch>(1);
};

} // namespace Quillmere
