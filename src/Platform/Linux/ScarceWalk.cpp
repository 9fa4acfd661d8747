#include "Platform/Linux/ScarceWalk.h"

#include "Platform/Linux/FolderOpening.h"

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

ScarceWalk::ScarceWalk(Opening openRoot, const Cancellation &cancellation)
    : m_openRoot(std::move(openRoot))
    , m_cancellation(cancellation)
    , m_reader(cancellation)
{
}

TreeSize ScarceWalk::of(const FilePath &folder, const Cancellation &cancellation)
{
    return measure([&] { return openFolderForReading(folder, FinalLink::Refuse); }, -1, cancellation);
}

TreeSize ScarceWalk::below(int parent, const char *name, const Cancellation &cancellation)
{
    return measure([=] { return openSubfolder(parent, name); }, parent, cancellation);
}

TreeSize ScarceWalk::measure(const Opening &openRoot, int kept, const Cancellation &cancellation)
{
    ScarceWalk walk(openRoot, cancellation);
    std::optional<std::thread> thread;
    while (!thread && !cancellation.isRequested()) {
        try {
            thread.emplace([&] {
                leaveDescriptorsBehind(kept);
                walk.run();
            });
        } catch (const std::system_error &) {
            std::this_thread::sleep_for(pauseBetweenTries);
        }
    }
    if (thread)
        thread->join();
    return walk.m_reader.sum();
}

void ScarceWalk::run()
{
    enter(openPatiently(m_openRoot), {});
    while (!m_levels.empty() && !m_cancellation.isRequested())
        goOn();
    m_folder = {};
}

void ScarceWalk::goOn()
{
    Level &newest = m_levels.back();
    if (!newest.subfolders.isEmpty() && !m_folder.isOpen())
        m_folder = openNewestLevel();
    if (newest.subfolders.isEmpty() || !m_folder.isOpen()) {
        m_folder = {};
        m_levels.pop_back();
        return;
    }
    const std::string name = newest.subfolders.takeFirst();
    enter(openPatiently([&] { return openSubfolder(m_folder.number(), name.c_str()); }), name);
}

FileDescriptor ScarceWalk::openPatiently(const Opening &open) const
{
    for (;;) {
        FileDescriptor folder = open();
        if (folder.isOpen() || !lacksDescriptor(errno) || m_cancellation.isRequested())
            return folder;
        std::this_thread::sleep_for(pauseBetweenTries);
    }
}

FileDescriptor ScarceWalk::openNewestLevel() const
{
    FileDescriptor folder = openPatiently(m_openRoot);
    for (size_t level = 1; level < m_levels.size() && folder.isOpen(); ++level)
        folder = openPatiently([&] { return openSubfolder(folder.number(), m_levels[level].name.c_str()); });
    return folder;
}

void ScarceWalk::enter(FileDescriptor folder, std::string name)
{
    if (!folder.isOpen())
        return;
    NameList subfolders;
    while (m_buffer.read(folder.number())) {
        if (m_reader.takeIn(m_buffer, folder.number(), subfolders))
            break;
    }
    if (subfolders.isEmpty())
        return;
    m_levels.push_back({std::move(name), std::move(subfolders)});
    m_folder = std::move(folder);
}

} // namespace Quillmere
