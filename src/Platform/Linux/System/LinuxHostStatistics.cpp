#include "Platform/Linux/System/LinuxHostStatistics.h"

#include "Platform/Linux/Files/ErrnoFailure.h"
#include "Platform/Linux/System/MemInfo.h"
#include "Platform/Linux/System/NetworkDevices.h"
#include "Platform/Linux/System/ProcFile.h"
#include "Platform/Linux/System/ProcStat.h"

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace Quillmere {

namespace {

Result<QByteArray> textOf(const FilePath &path)
{
    std::optional<QByteArray> text = readProcFile(AT_FDCWD, path.bytes().constData());
    if (!text)
        return failureFromErrno(errno, path);
    return *std::move(text);
}

Failure malformed(const FilePath &path)
{
    return {Failure::Kind::Malformed, path, {}};
}

/// 0 for an interface that has gone meanwhile.
short flagsOf(int socket, const QByteArray &name)
{
    ifreq request = {};
    if (name.size() >= IFNAMSIZ)
        return 0;
    std::ranges::copy(name, request.ifr_name);
    return ::ioctl(socket, SIOCGIFFLAGS, &request) == 0 ? request.ifr_flags : short(0);
}

} // namespace

// A socket belongs to the network namespace it was made in, as /proc/self/net does, and one call on it tells the flags.
// The files of /sys/class/net cost three calls each and show the namespace that /sys was mounted in, often another one.
LinuxHostStatistics::LinuxHostStatistics(const FilePath &proc)
    : m_stat(proc.appending("stat"))
    , m_memInfo(proc.appending("meminfo"))
    , m_devices(proc.appending("self/net/dev"))
    , m_socket(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0))
{
    // A kernel without this family of addresses has another.
    if (!m_socket.isOpen())
        m_socket = FileDescriptor(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0));
}

Result<CpuTicks> LinuxHostStatistics::cpuLoad() const
{
    const Result<QByteArray> text = textOf(m_stat);
    if (!text)
        return text.failure();
    const std::optional<CpuTicks> ticks = parseProcStat(text.value());
    return ticks ? Result(*ticks) : malformed(m_stat);
}

Result<VmStatistics> LinuxHostStatistics::virtualMemory() const
{
    const Result<QByteArray> text = textOf(m_memInfo);
    if (!text)
        return text.failure();
    const std::optional<quint64> available = parseMemInfo(text.value()).available;
    if (!available)
        return malformed(m_memInfo);
    return VmStatistics{*available / pageSize(), 0, 0};
}

quint64 LinuxHostStatistics::pageSize() const
{
    return static_cast<quint64>(::sysconf(_SC_PAGESIZE));
}

quint64 LinuxHostStatistics::physicalMemory() const
{
    const Result<QByteArray> text = textOf(m_memInfo);
    return text ? parseMemInfo(text.value()).total.value_or(0) : 0;
}

Result<QList<InterfaceCounters>> LinuxHostStatistics::interfaces() const
{
    const Result<QByteArray> text = textOf(m_devices);
    if (!text)
        return text.failure();
    QList<InterfaceCounters> interfaces;
    for (const NetworkDevice &device : parseNetworkDevices(text.value())) {
        const short flags = flagsOf(m_socket.number(), device.name);
        interfaces.append(
            {(flags & IFF_UP) != 0, (flags & IFF_LOOPBACK) != 0, device.hasData, device.received, device.sent});
    }
    return interfaces;
}

} // namespace Quillmere
