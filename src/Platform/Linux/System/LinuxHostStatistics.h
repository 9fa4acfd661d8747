#pragma once

#include "Platform/HostStatistics.h"
#include "Platform/Linux/Files/FileDescriptor.h"
#include "Values/FilePath.h"

namespace Quillmere {

/// The kernel's figures, read anew at every question.
/// Interfaces are those of the network namespace that the program was in when this was made.
class LinuxHostStatistics final : public HostStatistics
{
public:
    explicit LinuxHostStatistics(const FilePath &proc = FilePath("/proc"));

    [[nodiscard]] Result<CpuTicks> cpuLoad() const override;
    [[nodiscard]] Result<VmStatistics> virtualMemory() const override;
    [[nodiscard]] quint64 pageSize() const override;
    [[nodiscard]] quint64 physicalMemory() const override;
    [[nodiscard]] Result<QList<InterfaceCounters>> interfaces() const override;

private:
    FilePath m_stat;
    FilePath m_memInfo;
    FilePath m_devices;
    FileDescriptor m_socket; ///< Never connected: the kernel is asked for an interface's flags through it.
};

} // namespace Quillmere
