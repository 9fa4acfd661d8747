#pragma once

#include <QtGlobal>

namespace Quillmere {

/// What went over all live network interfaces.
struct TrafficStats
{
    quint64 currentDownload = 0; ///< Bytes per second since the last sample.
    quint64 currentUpload = 0; ///< Bytes per second since the last sample.
    quint64 totalDownload = 0; ///< Bytes since the baseline.
    quint64 totalUpload = 0; ///< Bytes since the baseline.

    bool operator==(const TrafficStats &) const = default;
};

} // namespace Quillmere
