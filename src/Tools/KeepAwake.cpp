#include "Tools/KeepAwake.h"

#include "Tools/LockedHolder.h"
#include "Tools/SystemdHolder.h"

#include <QDeadlineTimer>
#include <QFileInfo>
#include <QThread>

#include <tuple>
#include <utility>

namespace Quillmere {

namespace {

constexpr unsigned long glanceMilliseconds = 20;

std::unique_ptr<const KeepAwakeHolder> holderOfThisMachine(const QString &programs)
{
    // sd_booted(3) looks at this folder as well.
    if (QFileInfo(u"/run/systemd/system"_qs).isDir())
        return std::make_unique<SystemdHolder>();
    return std::make_unique<LockedHolder>(programs + u"/quillmere-keepawake"_qs, FilePath("/run/quillmere"));
}

} // namespace

KeepAwake::KeepAwake(LidInhibitors inhibitors, std::unique_ptr<const KeepAwakeHolder> holder,
                     std::chrono::milliseconds patience)
    : m_inhibitors(std::move(inhibitors))
    , m_holder(std::move(holder))
    , m_patience(patience)
{
}

KeepAwake KeepAwake::ofThisMachine(const QString &programs)
{
    return {LidInhibitors(QDBusConnection::systemBus()), holderOfThisMachine(programs)};
}

Result<bool> KeepAwake::isOn() const
{
    const Result<bool> listed = m_inhibitors.isListed();
    if (!listed)
        return listed.failure();
    // Anybody may be listed under our name; the holder is ours alone.
    const Result<bool> running = m_holder->isRunning();
    if (!running)
        return running.failure();
    return listed.value() && running.value();
}

Result<void> KeepAwake::switchOn() const
{
    const Result<bool> on = isOn();
    if (!on)
        return on.failure();
    if (on.value())
        return {};
    // One that logind does not list holds nothing.
    if (const Result<void> stopped = m_holder->stop(); !stopped)
        return stopped.failure();
    const Result<void> started = m_holder->start();
    // Another program may have been quicker; its holder is as good.
    if (!started && !m_holder->isRunning().valueOr(false))
        return started.failure();
    const Result<void> listed = waitUntilListed(true);
    if (!listed)
        std::ignore = m_holder->stop();
    return listed;
}

Result<void> KeepAwake::switchOff() const
{
    const bool wasRunning = m_holder->isRunning().valueOr(true);
    if (const Result<void> stopped = m_holder->stop(); !stopped)
        return stopped.failure();
    // Without a logind nothing is held. One listed beside a holder that did not run is somebody else's.
    if (!wasRunning || !m_inhibitors.isListed())
        return {};
    return waitUntilListed(false);
}

Result<void> KeepAwake::waitUntilListed(bool listed) const
{
    const QDeadlineTimer deadline(m_patience);
    for (;;) {
        const Result<bool> now = m_inhibitors.isListed();
        if (!now)
            return now.failure();
        if (now.value() == listed)
            return {};
        if (deadline.hasExpired())
            return Failure{
                Failure::Kind::Busy, {}, listed ? u"logind does not list it."_qs : u"logind lists it still."_qs};
        QThread::msleep(glanceMilliseconds);
    }
}

} // namespace Quillmere
