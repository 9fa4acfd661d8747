#pragma once

#include "Platform/Linux/Walk/FolderReader.h"

#include <atomic>
#include <condition_variable>

namespace Quillmere {

/// What the threads of one walk have in common. Lives in the frame of the call that asked for the walk.
class Walk
{
public:
    Walk(const Cancellation &cancellation, ReaderMaker makeReader)
        : m_cancellation(cancellation)
        , m_makeReader(std::move(makeReader))
    {
    }

    [[nodiscard]] const Cancellation &cancellation() const { return m_cancellation; }
    /// For one more of its threads.
    [[nodiscard]] std::unique_ptr<FolderReader> makeReader() const { return m_makeReader(); }
    /// Whether the pool knows of this walk. A small one ends before it does.
    [[nodiscard]] bool isShared() const { return m_isShared; }
    /// Whether some thread would take a job at once. Cheap enough to be asked for every folder.
    [[nodiscard]] bool isHungry() const { return m_hunger.load(std::memory_order_relaxed) > 0; }

private:
    friend class WalkPool;

    const Cancellation &m_cancellation;
    const ReaderMaker m_makeReader;
    std::atomic<int> m_hunger = 0;
    bool m_isShared = false; ///< Set before any other thread knows of the walk.

    // The rest is guarded by the pool's mutex.
    std::condition_variable m_ownerWakes;
    bool m_isOwnerWaiting = false;
    bool m_waitsForDisk = false;
    int m_helpers = 0; ///< Threads of the pool that are at work on this walk.
    WalkFindings m_findings; ///< Of the helpers that have finished their job.
};

} // namespace Quillmere
