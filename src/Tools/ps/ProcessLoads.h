#pragma once

#include "Platform/Linux/System/ProcessStat.h"
#include "Tools/ps/LoadSample.h"

#include <QList>

namespace Quillmere {

/// When processes were looked at.
struct Instant
{
    QByteArray boot; ///< As in LoadSample.
    quint64 sinceStart = 0; ///< Nanoseconds since the machine's start, asleep or awake.
    quint64 awake = 0; ///< Nanoseconds of these that it was awake.
    quint64 ticksPerSecond = 100;
};

/// The sample to keep from now on, which holds the load of every process of @p processes: since @p before, or since
/// it was started where that does not know it or is of another run of the machine.
/// When less time has passed than tells anything, the loads of @p before stand, and so do its figures.
[[nodiscard]] LoadSample sampleOf(const QList<ProcessStat> &processes, const Instant &now,
                                  const std::optional<LoadSample> &before);

/// A heading and a line a process: its number, its load, and its memory in KiB.
[[nodiscard]] QByteArray listing(const QList<ProcessStat> &processes, const LoadSample &sample, quint64 pageSize);

} // namespace Quillmere
