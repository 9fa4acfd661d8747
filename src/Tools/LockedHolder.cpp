#include "Tools/LockedHolder.h"

#include "Platform/Linux/Files/ErrnoFailure.h"
#include "Tools/DetachedProgram.h"
#include "Tools/HeldInhibitor.h"
#include "Tools/HolderLock.h"

#include <QDeadlineTimer>
#include <QFile>

#include <cerrno>
#include <csignal>

#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace Quillmere {

namespace {

constexpr std::chrono::seconds startPatience{10};
constexpr std::chrono::seconds endPatience{5};

/// True once the process is gone, which makes its descriptor readable.
bool isGoneWithin(int process, std::chrono::milliseconds patience)
{
    const QDeadlineTimer deadline(patience);
    pollfd waiting{process, POLLIN, 0};
    for (;;) {
        const int ready = ::poll(&waiting, 1, static_cast<int>(deadline.remainingTime()));
        if (ready >= 0 || errno != EINTR)
            return ready > 0;
    }
}

Result<void> endProcess(int process, const FilePath &runFolder)
{
    for (const int signal : {SIGTERM, SIGKILL}) {
        if (::syscall(SYS_pidfd_send_signal, process, signal, nullptr, 0) != 0 && errno != ESRCH)
            return failureFromErrno(errno, runFolder);
        if (isGoneWithin(process, endPatience))
            return {};
    }
    return Failure{Failure::Kind::Busy, runFolder, u"The holder does not end."_qs};
}

} // namespace

LockedHolder::LockedHolder(QString program, FilePath runFolder)
    : m_program(std::move(program))
    , m_runFolder(std::move(runFolder))
{
}

Result<bool> LockedHolder::isRunning() const
{
    const Result<HolderLock> lock = HolderLock::open(m_runFolder);
    if (!lock)
        return lock.failure();
    const auto holder = lock.value().holder();
    if (!holder)
        return holder.failure();
    return holder.value().has_value();
}

Result<void> LockedHolder::start() const
{
    const Result<bool> running = isRunning();
    if (!running)
        return running.failure();
    if (running.value())
        return Failure{Failure::Kind::AlreadyExists, m_runFolder, u"There is a holder already."_qs};
    const Result<QByteArray> said
        = startDetached(FilePath(QFile::encodeName(m_program)), {m_runFolder.bytes()}, startPatience);
    if (!said)
        return said.failure();
    if (said.value() != HeldInhibitor::isHeld())
        return Failure{Failure::Kind::Other, m_runFolder, QString::fromUtf8(said.value()).trimmed()};
    return {};
}

Result<void> LockedHolder::stop() const
{
    const Result<HolderLock> lock = HolderLock::open(m_runFolder);
    if (!lock)
        return lock.failure();
    const auto holder = lock.value().holder();
    if (!holder)
        return holder.failure();
    return holder.value() ? endProcess(holder.value()->number(), m_runFolder) : Result<void>();
}

} // namespace Quillmere
