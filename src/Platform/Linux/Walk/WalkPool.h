#pragma once

#include "Platform/Linux/Walk/WalkFindings.h"
#include "Platform/Linux/Walk/WalkJob.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace Quillmere {

/// The threads that help with walks. They are made when they are first needed, run below the priority of the thread
/// that made the pool, all alike, and sleep when nobody walks.
class WalkPool
{
public:
    /// At most @p helpers threads beside those in which walks were asked for, and at most @p helpersOnDisk while a walk
    /// has to wait for the disk.
    WalkPool(int helpers, int helpersOnDisk);
    /// Only when no walk is going on.
    ~WalkPool();
    Q_DISABLE_COPY_MOVE(WalkPool)

    /// The one of the whole program.
    [[nodiscard]] static WalkPool &shared();

    /// From now on @p walk counts as hungry whenever a thread is free. Its owner then calls next() until that answers
    /// nothing.
    void share(Walk &walk);
    /// The disk is slower than the threads of @p walk, so that more of them will pay.
    void noteWaitForDisk(Walk &walk);
    void give(WalkJob job);
    /// For the thread that asked for @p walk and has nothing left of it: waits for a job, or for the end of the walk.
    [[nodiscard]] std::optional<WalkJob> next(Walk &walk);
    /// What the helpers found. Once next() has answered nothing.
    [[nodiscard]] static WalkFindings findingsOfHelpers(Walk &walk);

private:
    void serve();
    void work(std::unique_lock<std::mutex> &lock);
    /// Makes sure that someone will take the newest job: answers whom to wake, or nothing if that is not needed.
    [[nodiscard]] std::condition_variable *findTakerFor(Walk &walk);
    void addThreadIfAllowed();
    /// Once more threads may be at work: nobody else would take what was kept ready while all of the fewer were busy.
    void addThreadsForJobsAhead();
    [[nodiscard]] int mostHelpers() const;
    void updateHunger();

    const int m_helpers;
    const int m_helpersOnDisk;
    const int m_niceness; ///< Of every helper.
    std::mutex m_mutex;
    std::condition_variable m_helperWakes;
    std::deque<WalkJob> m_jobs;
    std::vector<Walk *> m_walks;
    std::vector<std::thread> m_threads;
    int m_busy = 0; ///< Helpers at work.
    int m_waiting = 0; ///< Helpers asleep.
    bool m_isEnding = false;
};

} // namespace Quillmere
