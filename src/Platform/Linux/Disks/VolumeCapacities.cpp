#include "Platform/Linux/Disks/VolumeCapacities.h"

#include "Platform/Linux/Disks/KnownMounts.h"
#include "Platform/Linux/Files/ErrnoFailure.h"

#include <QSet>

#include <cerrno>
#include <future>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

#include <sys/statvfs.h>

namespace Quillmere {

namespace {

constexpr std::chrono::milliseconds patience{300};

bool alwaysAnswers(const FilePath &path)
{
    const std::optional<MountEntry> mount = mountThatHolds(path, knownMounts());
    // Further down, a link may lead elsewhere.
    return mount && mount->location == path && alwaysAnswers(*mount);
}

Result<VolumeCapacity> statistics(const FilePath &path)
{
    struct statvfs status = {};
    if (::statvfs(path.bytes().constData(), &status) != 0)
        return failureFromErrno(errno, path);
    const auto bytes = [&](fsblkcnt_t blocks) { return static_cast<qint64>(blocks * status.f_frsize); };
    const qint64 available = bytes(status.f_bavail);
    // Nothing here is cleared to make room, so that both kinds of room are one.
    return VolumeCapacity{bytes(status.f_blocks), available, available};
}

VolumeCapacity only(VolumeCapacity capacity, CapacityKeys keys)
{
    if (!keys.testFlag(CapacityKey::Total))
        capacity.total.reset();
    if (!keys.testFlag(CapacityKey::AvailableForImportantUsage))
        capacity.availableForImportantUsage.reset();
    if (!keys.testFlag(CapacityKey::Available))
        capacity.available.reset();
    return capacity;
}

Failure busy(const FilePath &path)
{
    return {Failure::Kind::Busy, path, u"The volume does not answer"_qs};
}

} // namespace

/// Which volumes are being asked.
struct VolumeCapacities::Waiting
{
    std::mutex mutex;
    QSet<FilePath> paths;

    bool begin(const FilePath &path)
    {
        const std::scoped_lock lock(mutex);
        const qsizetype before = paths.size();
        paths.insert(path);
        return paths.size() > before;
    }

    void end(const FilePath &path)
    {
        const std::scoped_lock lock(mutex);
        paths.remove(path);
    }
};

VolumeCapacities::VolumeCapacities()
    : VolumeCapacities(statistics, patience)
{
}

VolumeCapacities::VolumeCapacities(Question question, std::chrono::milliseconds patience)
    : m_question(std::move(question))
    , m_patience(patience)
    , m_waiting(std::make_shared<Waiting>())
{
}

Result<VolumeCapacity> VolumeCapacities::ask(const FilePath &path, CapacityKeys keys) const
{
    Result<VolumeCapacity> capacity = alwaysAnswers(path) ? m_question(path) : askPatiently(path);
    return capacity ? Result(only(capacity.value(), keys)) : capacity;
}

Result<VolumeCapacity> VolumeCapacities::askPatiently(const FilePath &path) const
{
    if (!m_waiting->begin(path))
        return busy(path);
    const auto answer = std::make_shared<std::promise<Result<VolumeCapacity>>>();
    std::future<Result<VolumeCapacity>> coming = answer->get_future();
    try {
        std::thread([question = m_question, waiting = m_waiting, path, answer] {
            Result<VolumeCapacity> capacity = question(path);
            waiting->end(path);
            answer->set_value(std::move(capacity));
        }).detach();
    } catch (const std::system_error &) {
        m_waiting->end(path);
        return busy(path);
    }
    if (coming.wait_for(m_patience) != std::future_status::ready)
        return busy(path);
    return coming.get();
}

} // namespace Quillmere
