#include "Platform/Linux/Walk/WalkPool.h"

#include "Platform/Linux/Walk/Walk.h"
#include "Platform/Linux/Walk/WalkWorker.h"

#include <sys/resource.h>

#include <algorithm>
#include <system_error>

namespace Quillmere {

namespace {

// More threads than cores pay while they wait for the disk; beyond these numbers they no longer do.
constexpr int threadsPerCore = 2;
constexpr int threadsPerCoreOnDisk = 8;
constexpr int mostThreads = 16;
// Jobs kept ready while everybody is busy, so that a thread that ends its own need not sleep until it is given another.
constexpr int jobsAhead = 4;
// Steps of nice(2) below the rest of the program.
constexpr int stepsBelow = 5;

int helpersForThisMachine(int perCore)
{
    const int cores = std::max(static_cast<int>(std::thread::hardware_concurrency()), 1);
    return std::min(perCore * cores, mostThreads) - 1;
}

} // namespace

WalkPool::WalkPool(int helpers, int helpersOnDisk)
    : m_helpers(helpers)
    , m_helpersOnDisk(helpersOnDisk)
    // On Linux, 0 is the calling thread alone.
    , m_niceness(::getpriority(PRIO_PROCESS, 0) + stepsBelow)
{
}

WalkPool::~WalkPool()
{
    {
        const std::scoped_lock lock(m_mutex);
        m_isEnding = true;
    }
    m_helperWakes.notify_all();
    for (std::thread &thread : m_threads)
        thread.join();
}

WalkPool &WalkPool::shared()
{
    // Never destroyed: a walk may still be going on in another thread while the program ends.
    static WalkPool *const pool
        = new WalkPool(helpersForThisMachine(threadsPerCore), helpersForThisMachine(threadsPerCoreOnDisk));
    return *pool;
}

void WalkPool::share(Walk &walk)
{
    const std::scoped_lock lock(m_mutex);
    walk.m_isShared = true;
    m_walks.push_back(&walk);
    updateHunger();
}

void WalkPool::noteWaitForDisk(Walk &walk)
{
    const std::scoped_lock lock(m_mutex);
    walk.m_waitsForDisk = true;
    addThreadsForJobsAhead();
    updateHunger();
}

void WalkPool::give(WalkJob job)
{
    std::unique_lock lock(m_mutex);
    Walk &walk = *job.walk;
    m_jobs.push_back(std::move(job));
    std::condition_variable *sleeper = findTakerFor(walk);
    updateHunger();
    // Whoever wakes wants the mutex at once.
    lock.unlock();
    if (sleeper)
        sleeper->notify_one();
}

std::optional<WalkJob> WalkPool::next(Walk &walk)
{
    std::unique_lock lock(m_mutex);
    for (;;) {
        const auto job
            = std::find_if(m_jobs.begin(), m_jobs.end(), [&](const WalkJob &each) { return each.walk == &walk; });
        if (job != m_jobs.end()) {
            WalkJob taken = std::move(*job);
            m_jobs.erase(job);
            updateHunger();
            return taken;
        }
        if (walk.m_helpers == 0) {
            std::erase(m_walks, &walk);
            return std::nullopt;
        }
        walk.m_isOwnerWaiting = true;
        updateHunger();
        walk.m_ownerWakes.wait(lock);
        walk.m_isOwnerWaiting = false;
    }
}

WalkFindings WalkPool::findingsOfHelpers(Walk &walk)
{
    return std::move(walk.m_findings);
}

void WalkPool::serve()
{
    // It begins with the niceness of the thread that made it, which may be another helper.
    ::setpriority(PRIO_PROCESS, 0, m_niceness);
    std::unique_lock lock(m_mutex);
    for (;;) {
        ++m_waiting;
        m_helperWakes.wait(lock, [this] { return m_isEnding || !m_jobs.empty(); });
        --m_waiting;
        if (m_isEnding)
            return;
        work(lock);
    }
}

void WalkPool::work(std::unique_lock<std::mutex> &lock)
{
    WalkJob job = std::move(m_jobs.front());
    m_jobs.pop_front();
    Walk &walk = *job.walk;
    ++walk.m_helpers;
    ++m_busy;
    updateHunger();

    lock.unlock();
    WalkWorker worker(walk, *this);
    worker.run(std::move(job));
    WalkFindings findings = worker.takeFindings();
    lock.lock();

    walk.m_findings += std::move(findings);
    --walk.m_helpers;
    --m_busy;
    updateHunger();
    if (walk.m_helpers == 0)
        walk.m_ownerWakes.notify_one();
}

std::condition_variable *WalkPool::findTakerFor(Walk &walk)
{
    if (std::exchange(walk.m_isOwnerWaiting, false))
        return &walk.m_ownerWakes;
    if (m_waiting >= static_cast<int>(m_jobs.size()))
        return &m_helperWakes;
    addThreadIfAllowed();
    return nullptr;
}

void WalkPool::addThreadIfAllowed()
{
    if (static_cast<int>(m_threads.size()) >= mostHelpers())
        return;
    try {
        m_threads.emplace_back(&WalkPool::serve, this);
    } catch (const std::system_error &) {
        // The system has no thread left for us. The job waits for whoever is there, in the end its own walk's thread.
    }
}

void WalkPool::addThreadsForJobsAhead()
{
    for (int untaken = static_cast<int>(m_jobs.size()) - m_waiting; untaken > 0; --untaken)
        addThreadIfAllowed();
}

int WalkPool::mostHelpers() const
{
    const bool isOnDisk
        = std::any_of(m_walks.begin(), m_walks.end(), [](const Walk *walk) { return walk->m_waitsForDisk; });
    return isOnDisk ? m_helpersOnDisk : m_helpers;
}

void WalkPool::updateHunger()
{
    const int ready = static_cast<int>(m_jobs.size());
    const int wanted = std::max(mostHelpers() - m_busy, 0) + (m_busy > 0 ? jobsAhead : 0);
    for (Walk *walk : m_walks)
        walk->m_hunger.store(wanted - ready + (walk->m_isOwnerWaiting ? 1 : 0), std::memory_order_relaxed);
}

} // namespace Quillmere
