#pragma once

#include "Fakes/Gate.h"

#include <atomic>
#include <vector>

namespace Quillmere {

/// Holds up the first calls of a worker, each at a gate of its own, in the order in which they come; later ones pass.
/// Copied into the worker, so that it outlives the test's own scope.
class HeldCalls
{
public:
    explicit HeldCalls(std::size_t count)
        : m_gates(count)
    {
    }

    /// On the worker.
    void pass() const
    {
        const std::size_t call = (*m_arrived)++;
        if (call < m_gates.size())
            m_gates[call].wait();
    }
    /// How many calls came, those that passed included.
    [[nodiscard]] std::size_t arrived() const { return *m_arrived; }
    /// Lets a held call go on, counted from 0.
    void release(std::size_t call) const { m_gates.at(call).open(); }

private:
    std::vector<Gate> m_gates;
    std::shared_ptr<std::atomic<std::size_t>> m_arrived = std::make_shared<std::atomic<std::size_t>>(0);
};

} // namespace Quillmere
