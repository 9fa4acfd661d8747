#pragma once

#include "Platform/Linux/Walk/DiskReads.h"
#include "Platform/Linux/Walk/FolderReader.h"
#include "Platform/Linux/Walk/WalkJob.h"

#include <vector>

namespace Quillmere {

class WalkPool;

/// One thread's part in a walk: goes through its folders depth first, and gives the oldest part of them away when
/// another thread is hungry.
class WalkWorker
{
public:
    WalkWorker(Walk &walk, WalkPool &pool);

    /// Works @p job off, except for what others take over. No folder is open afterwards.
    void run(WalkJob job);

    /// What this worker itself has found, which it then no longer has.
    [[nodiscard]] WalkFindings takeFindings();

private:
    void goOn();
    void enter(WalkFrame &above);
    void read(WalkFrame &frame);
    /// A measure of what this worker has done: about a microsecond of a walk in memory.
    [[nodiscard]] qint64 effort() const;
    void shareOnceWorthwhile();
    void watchTheDisk();
    void feedTheHungry();
    void give(WalkFrame frame, DirectoryBuffer entries = {});

    Walk &m_walk;
    WalkPool &m_pool;
    const std::unique_ptr<FolderReader> m_reader;
    DirectoryBuffer m_buffer;
    WalkFindings m_findingsOfScarceWalks;
    bool m_hasLeftOut = false; ///< Asked to stop, with something still to be done.
    qint64 m_folders = 0; ///< Read so far.
    DiskReads m_diskReads;
    qint64 m_effortBetweenLooks = 0; ///< How long the disk goes unwatched; 0 while this worker does not watch it.
    qint64 m_effortAtLastLook = 0;
    qint64 m_effortAtNextLook = 0;
    std::vector<WalkFrame> m_frames; ///< The oldest, which is the highest in the tree, first.
};

} // namespace Quillmere
