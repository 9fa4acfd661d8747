#pragma once

#include "Platform/HostStatistics.h"

#include <QByteArrayView>

#include <optional>

namespace Quillmere {

/// The ticks of all processors together in what /proc/stat holds. Waiting for a disk counts as idle; interrupts and
/// what a host machine took for others count as system. Nothing when the text has no such line.
[[nodiscard]] std::optional<CpuTicks> parseProcStat(QByteArrayView text);

} // namespace Quillmere
