#include "Platform/Linux/Disks/VolumeCapacities.h"

#include "Platform/Linux/Disks/KnownMounts.h"
#include "Platform/Linux/Files/ErrnoFailure.h"

#include <QHash>

#include <cerrno>
#include <future>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

#include <sys/statvfs.h>

namespace Quillmere {

namespace {

constexpr std::chrono::milliseconds usualPatience{300};

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

Failure notAnswering(const FilePath &path)
{
    return {Failure::Kind::NotAnswering, path, u"The volume does not answer"_qs};
}

} // namespace

/// A question under way.
struct VolumeCapacities::Asked
{
    std::chrono::steady_clock::time_point since;
    std::shared_future<Result<VolumeCapacity>> answer;
};

/// The questions under way.
struct VolumeCapacities::Waiting
{
    std::mutex mutex;
    QHash<FilePath, Asked> questions;

    void end(const FilePath &path)
    {
        const std::scoped_lock lock(mutex);
        questions.remove(path);
    }

    /// The question that is under way for @p path, or else @p question from now on. Throws where it cannot be asked.
    static Asked join(const std::shared_ptr<Waiting> &waiting, const FilePath &path, const Question &question)
    {
        const std::scoped_lock lock(waiting->mutex);
        if (const auto known = waiting->questions.constFind(path); known != waiting->questions.constEnd())
            return *known;
        const auto answer = std::make_shared<std::promise<Result<VolumeCapacity>>>();
        const Asked asked = {std::chrono::steady_clock::now(), answer->get_future().share()};
        std::thread([question, waiting, path, answer] {
            Result<VolumeCapacity> capacity = question(path);
            waiting->end(path);
            answer->set_value(std::move(capacity));
        }).detach();
        waiting->questions.insert(path, asked);
        return asked;
    }
};

VolumeCapacities::VolumeCapacities()
    : VolumeCapacities(statistics, usualPatience)
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
    return ask(path, keys, m_patience);
}

Result<VolumeCapacity> VolumeCapacities::ask(const FilePath &path, CapacityKeys keys,
                                             std::chrono::milliseconds patience) const
{
    Result<VolumeCapacity> capacity = alwaysAnswers(path) ? m_question(path) : askPatiently(path, patience);
    return capacity ? Result(only(capacity.value(), keys)) : capacity;
}

Result<VolumeCapacity> VolumeCapacities::askPatiently(const FilePath &path, std::chrono::milliseconds patience) const
{
    try {
        const Asked asked = Waiting::join(m_waiting, path, m_question);
        if (asked.answer.wait_until(asked.since + patience) == std::future_status::ready)
            return asked.answer.get();
    } catch (const std::system_error &) {
        // No thread can be spared for it.
    }
    return notAnswering(path);
}

} // namespace Quillmere
