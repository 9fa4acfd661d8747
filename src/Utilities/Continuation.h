#pragma once

#include <coroutine>
#include <memory>
#include <optional>
#include <utility>

namespace Quillmere {

/// Turns an answer that a callback brings into one that a coroutine awaits. Copies speak of the same answer, so that
/// one can be kept for the callback. One thread only.
template<typename Answer>
class Continuation
{
public:
    /// Gives the answer and has the waiting coroutine go on at once, within this call. Only the first call counts.
    void resume(Answer answer) const
    {
        if (m_state->answer)
            return;
        m_state->answer = std::move(answer);
        // The coroutine may destroy whoever holds this object.
        if (const std::coroutine_handle<> waiting = std::exchange(m_state->waiting, nullptr))
            waiting.resume();
    }

    [[nodiscard]] bool await_ready() const { return m_state->answer.has_value(); }
    void await_suspend(std::coroutine_handle<> waiting) const { m_state->waiting = waiting; }
    [[nodiscard]] Answer await_resume() const { return *m_state->answer; }

private:
    struct State
    {
        std::optional<Answer> answer;
        std::coroutine_handle<> waiting;
    };

    std::shared_ptr<State> m_state = std::make_shared<State>();
};

} // namespace Quillmere
