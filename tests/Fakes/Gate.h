#pragma once

#include <atomic>
#include <memory>

namespace Quillmere {

/// Holds a worker up until the test lets it go on. A copy goes into the worker, so that it outlives the test's own
/// scope; the one that it was copied from opens when it goes, so that a test that fails before leaves nobody waiting.
class Gate
{
public:
    Gate() = default;
    Gate(const Gate &other)
        : m_isOpen(other.m_isOpen)
        , m_isCopy(true)
    {
    }
    Gate &operator=(const Gate &) = delete;
    ~Gate()
    {
        if (!m_isCopy)
            open();
    }

    void wait() const { m_isOpen->wait(false); }
    void open() const
    {
        m_isOpen->store(true);
        m_isOpen->notify_all();
    }
    [[nodiscard]] bool isOpen() const { return m_isOpen->load(); }

private:
    std::shared_ptr<std::atomic<bool>> m_isOpen = std::make_shared<std::atomic<bool>>(false);
    bool m_isCopy = false;
};

} // namespace Quillmere
