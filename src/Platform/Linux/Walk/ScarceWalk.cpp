#include "Platform/Linux/Walk/ScarceWalk.h"

#include "Platform/Linux/Files/FolderOpening.h"

#include <linux/close_range.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <system_error>
#include <thread>

namespace Quillmere {

namespace {

// What is lacking comes back only when somebody else lets go of it, which nothing tells us.
constexpr auto pauseBetweenTries = std::chrono::milliseconds(1);

/// Gives the calling thread a table of descriptors of its own with nothing in it but @p kept. False where there is no
/// memory for one: the thread then still shares that of the whole program, which loses nothing.
bool leaveDescriptorsBehind(int kept)
{
    if (::close_range(static_cast<unsigned>(kept + 1), ~0U, CLOSE_RANGE_UNSHARE) != 0)
        return false;
    if (kept > 0)
        ::close_range(0, static_cast<unsigned>(kept - 1), 0);
    return true;
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
    bool isWalked = false;
    const auto walkApart = [&] {
        isWalked = leaveDescriptorsBehind(kept);
        if (isWalked)
            scarce.run(path);
    };
    for (;;) {
        try {
            std::thread(walkApart).join();
        } catch (const std::system_error &) {
            // No more threads for now.
        }
        if (isWalked || walk.cancellation().isRequested())
            break;
        std::this_thread::sleep_for(pauseBetweenTries);
    }
    WalkFindings findings = scarce.m_reader->takeFindings();
    findings.isPart = findings.isPart || scarce.m_hasLeftOut || !isWalked;
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
