#include "Platform/Linux/Walk/WalkWorker.h"

#include "Platform/Linux/Files/FolderOpening.h"
#include "Platform/Linux/Walk/ScarceWalk.h"
#include "Platform/Linux/Walk/Walk.h"
#include "Platform/Linux/Walk/WalkPool.h"

#include <algorithm>
#include <cerrno>

namespace Quillmere {

namespace {

// A folder of a million sub-folders is gone through in stretches, so that its names need not all be kept.
constexpr size_t mostBytesOfNames = 64 * 1024;

// Below about a millisecond of work, waking other threads costs more than it saves.
constexpr qint64 effortOfAFile = 1;
constexpr qint64 effortOfAFolder = 16;
constexpr qint64 effortWorthSharing = 1024;

// A cold walk fetches several sectors for every folder; one in memory hardly any.
constexpr qint64 effortPerSectorInMemory = 16;

// Looking costs a call of the system, so a walk that has long been fast is looked at less often.
constexpr qint64 effortUntilFirstLook = 512;
constexpr qint64 mostEffortBetweenLooks = 32 * 1024;

} // namespace

WalkWorker::WalkWorker(Walk &walk, WalkPool &pool)
    : m_walk(walk)
    , m_pool(pool)
    , m_reader(walk.makeReader())
{
}

void WalkWorker::run(WalkJob job)
{
    if (!job.entries.isEmpty())
        m_reader->takeIn(job.entries, *job.frame.folder, job.frame.subfolders);
    m_frames.push_back(std::move(job.frame));
    // A root is read even if the walk is to stop: of one that holds nothing, nothing is left out.
    if (m_frames.back().isUnread)
        goOn();
    // What others had given away by then is dropped: entered, it would only be halved and given away once more.
    while (!m_frames.empty() && !m_walk.cancellation().isRequested())
        goOn();
    m_hasLeftOut
        = m_hasLeftOut || std::ranges::any_of(m_frames, [](const WalkFrame &frame) { return !frame.isDone(); });
    m_frames.clear();
}

WalkFindings WalkWorker::takeFindings()
{
    WalkFindings findings = m_reader->takeFindings();
    findings += std::exchange(m_findingsOfScarceWalks, {});
    findings.isPart = findings.isPart || std::exchange(m_hasLeftOut, false);
    return findings;
}

void WalkWorker::goOn()
{
    WalkFrame &newest = m_frames.back();
    if (!newest.subfolders.isEmpty()) {
        enter(newest);
        feedTheHungry();
    } else if (newest.isUnread) {
        read(newest);
    } else {
        m_frames.pop_back();
    }
}

void WalkWorker::enter(WalkFrame &above)
{
    const char *name = above.subfolders.takeFirst();
    FileDescriptor opened = openSubfolder(above.folder->number(), name);
    if (!opened.isOpen() && lacksDescriptor(errno))
        m_findingsOfScarceWalks += ScarceWalk::below(*above.folder, name, m_walk);
    WalkFolder folder{std::move(opened), above.folder->pathOf(name)};
    // Closed before its last sub-folder is read, so that a chain of any depth keeps two folders open.
    if (above.isDone())
        m_frames.pop_back();
    if (!folder.descriptor.isOpen())
        return;

    WalkFrame frame{std::make_shared<const WalkFolder>(std::move(folder)), {}, true};
    read(frame);
    if (!frame.isDone())
        m_frames.push_back(std::move(frame));
}

void WalkWorker::read(WalkFrame &frame)
{
    ++m_folders;
    const WalkFolder &folder = *frame.folder;
    for (bool isFirst = true; m_buffer.read(folder.number()); isFirst = false) {
        // Helpers drop what they are given once the walk is to stop, and so would stay hungry to the folder's end.
        if (!isFirst && m_walk.isHungry() && !m_walk.cancellation().isRequested()) {
            give({frame.folder, {}, false}, std::move(m_buffer));
            continue;
        }
        const bool isLast = m_reader->takeIn(m_buffer, folder, frame.subfolders);
        shareOnceWorthwhile();
        watchTheDisk();
        if (isLast)
            break;
        if (frame.subfolders.byteCount() >= mostBytesOfNames)
            return;
    }
    frame.isUnread = false;
}

qint64 WalkWorker::effort() const
{
    return m_reader->size().fileCount * effortOfAFile + m_folders * effortOfAFolder;
}

void WalkWorker::shareOnceWorthwhile()
{
    if (m_walk.isShared() || effort() < effortWorthSharing)
        return;
    m_pool.share(m_walk);
    m_effortBetweenLooks = effortUntilFirstLook;
    watchTheDisk();
}

void WalkWorker::watchTheDisk()
{
    if (m_effortBetweenLooks == 0 || effort() < m_effortAtNextLook)
        return;
    const qint64 sectors = m_diskReads.sectorsSinceLastAsked();
    if (sectors > (effort() - m_effortAtLastLook) / effortPerSectorInMemory) {
        m_pool.noteWaitForDisk(m_walk);
        m_effortBetweenLooks = 0;
        return;
    }
    m_effortAtLastLook = effort();
    m_effortAtNextLook = m_effortAtLastLook + m_effortBetweenLooks;
    m_effortBetweenLooks = std::min(2 * m_effortBetweenLooks, mostEffortBetweenLooks);
}

void WalkWorker::feedTheHungry()
{
    if (!m_walk.isHungry())
        return;
    for (WalkFrame &frame : m_frames) {
        NameList given = frame.subfolders.takeLaterHalf();
        // Of the newest frame this thread itself lives; an older one may be given away to its last name.
        if (given.isEmpty() && &frame != &m_frames.back())
            given = std::exchange(frame.subfolders, {});
        if (!given.isEmpty()) {
            give({frame.folder, std::move(given), false});
            return;
        }
    }
}

void WalkWorker::give(WalkFrame frame, DirectoryBuffer entries)
{
    m_pool.give({&m_walk, std::move(frame), std::move(entries)});
}

} // namespace Quillmere
