#include "Platform/Linux/Disks/IdleMounts.h"

#include <algorithm>
#include <chrono>
#include <future>
#include <memory>
#include <system_error>
#include <thread>

#include <fcntl.h>

namespace Quillmere {

namespace {

constexpr std::chrono::seconds patienceForAMount{3};

// Opening mounts, whether or not the folder may be read then: unlike a look at it, or a path alone.
void touch(const FilePath &folder)
{
    const FileDescriptor opened(::open(folder.bytes().constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK));
}

} // namespace

QList<FilePath> idleBootFolders(const QList<MountEntry> &table)
{
    QList<FilePath> idle;
    for (qsizetype at = 0; at < table.size(); ++at) {
        const MountEntry &entry = table.at(at);
        const QList<MountEntry> later = table.mid(at + 1);
        const bool isMounted = std::ranges::find(later, entry.location, &MountEntry::location) != later.end();
        if (isTrigger(entry) && isOfBootLoader(entry.location) && !isMounted)
            idle.append(entry.location);
    }
    return idle;
}

bool wakeBootFolders(const QList<MountEntry> &table)
{
    const QList<FilePath> idle = idleBootFolders(table);
    if (idle.isEmpty())
        return false;
    const auto done = std::make_shared<std::promise<void>>();
    const std::future<void> coming = done->get_future();
    try {
        std::thread([idle, done] {
            std::ranges::for_each(idle, touch);
            done->set_value();
        }).detach();
    } catch (const std::system_error &) {
        return false;
    }
    coming.wait_for(patienceForAMount);
    return true;
}

} // namespace Quillmere
