#include "Platform/Linux/Walk/ScarceWalk.h"

#include "Platform/Linux/Files/FolderOpening.h"

#include <linux/close_range.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <optional>
#include <system_error>
#include <thread>

namespace Quillmere {

namespace {

// What is lacking comes back only when somebody else lets go of it, which nothing tells us.
constexpr auto pauseBetweenTries = std::chrono::milliseconds(1);

/// Gives the calling thread a table of descriptors of its own with nothing in it but @p kept.
void leaveDescriptorsBehind(int kept)
{
    ::close_range(static_cast<unsigned>(kept + 1), ~0U, CLOSE_RANGE_UNSHARE);
    if (kept > 0)
        ::close_range(0, static_cast<unsigned>(kept - 1), 0);
}

} // namespace

ScarceWalk::ScarceWalk(Opening openRoot, const Walk &walk)
    : m_openRoot(std::move(openRoot))
    , m_cancellation(walk.cancellation())
    , m_reader(walk.makeReader())
{
}

WalkFindings ScarceWalk::of(const FilePath &folder, const QByteArray &path, const Walk &walk)
{
    return walkFrom([&] { return openFolderForReading(folder, FinalLink::Refuse); }, -1, path, walk);
}

WalkFindings ScarceWalk::below(const WalkFolder &parent, const char *name, const Walk &walk)
{
    const int number = parent.number();
    return walkFrom([=] { return openSubfolder(number, name); }, number, parent.pathOf(name), walk);
}

WalkFindings ScarceWalk::walkFrom(const Opening &openRoot, int kept, const QByteArray &path, const Walk &walk)
{
    ScarceWalk scarce(openRoot, walk);
    std::optional<std::thread> thread;
    while (!thread) {
        try {
            thread.emplace([&] {
                leaveDescriptorsBehind(kept);
                scarce.run(path);
            });
        } catch (const std::system_error &) {
            if (walk.cancellation().isRequested())
                break;
            std::this_thread::sleep_for(pauseBetweenTries);
        }
    }
    if (thread)
        thread->join();
    WalkFindings findings = scarce.m_reader->takeFindings();
    findings.isPart = findings.isPart || scarce.m_hasLeftOut || !thread;
    return findings;
}

void ScarceWalk::run(const QByteArray &path)
{
    enter(openPatiently(m_openRoot), {}, path);
    while (!m_levels.empty() && !m_cancellation.isRequested())
        goOn();
    m_hasLeftOut = m_hasLeftOut || !m_levels.empty();
    m_folder = {};
}

void ScarceWalk::goOn()
{
    Level &newest = m_levels.back();
    if (!newest.subfolders.isEmpty() && !m_folder.descriptor.isOpen())
        m_folder = {openNewestLevel(), newest.path};
    if (newest.subfolders.isEmpty() || !m_folder.descriptor.isOpen()) {
        m_folder = {};
        m_levels.pop_back();
        return;
    }
    const std::string name = newest.subfolders.takeFirst();
    enter(openPatiently([&] { return openSubfolder(m_folder.number(), name.c_str()); }), name,
          m_folder.pathOf(name.c_str()));
}

FileDescriptor ScarceWalk::openPatiently(const Opening &open)
{
    for (;;) {
        FileDescriptor folder = open();
        if (folder.isOpen() || !lacksDescriptor(errno))
            return folder;
        if (m_cancellation.isRequested()) {
            m_hasLeftOut = true;
            return folder;
        }
        std::this_thread::sleep_for(pauseBetweenTries);
    }
}

FileDescriptor ScarceWalk::openNewestLevel()
{
    FileDescriptor folder = openPatiently(m_openRoot);
    for (size_t level = 1; level < m_levels.size() && folder.isOpen(); ++level)
        folder = openPatiently([&] { return openSubfolder(folder.number(), m_levels[level].name.c_str()); });
    return folder;
}

void ScarceWalk::enter(FileDescriptor descriptor, std::string name, const QByteArray &path)
{
    if (!descriptor.isOpen())
        return;
    WalkFolder folder{std::move(descriptor), path};
    NameList subfolders;
    while (m_buffer.read(folder.number())) {
        if (m_reader->takeIn(m_buffer, folder, subfolders))
            break;
    }
    if (subfolders.isEmpty())
        return;
    m_levels.push_back({std::move(name), path, std::move(subfolders)});
    m_folder = std::move(folder);
}

} // namespace Quillmere
