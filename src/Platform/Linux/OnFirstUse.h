#pragma once

#include <functional>
#include <memory>
#include <mutex>

namespace Quillmere {

/// Something that is made when it is first asked for, because making it follows links wherever they lead, dead servers
/// included, which the start of the program must not wait for. Any thread.
template<typename Made>
class OnFirstUse
{
public:
    using Maker = std::function<std::unique_ptr<const Made>()>;

    /// @p make is called once, on the thread of the first question; others wait for it.
    explicit OnFirstUse(Maker make)
        : m_make(std::move(make))
    {
    }

    const Made *operator->() const
    {
        std::call_once(m_once, [this] { m_made = m_make(); });
        return m_made.get();
    }

private:
    Maker m_make;
    mutable std::once_flag m_once;
    mutable std::unique_ptr<const Made> m_made;
};

} // namespace Quillmere
