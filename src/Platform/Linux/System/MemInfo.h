#pragma once

#include <QByteArrayView>

#include <optional>

namespace Quillmere {

/// The machine's memory in bytes.
struct MemInfo
{
    std::optional<quint64> total;
    /// What programs could have at once, without anything being swapped out for it.
    std::optional<quint64> available;

    bool operator==(const MemInfo &) const = default;
};

/// Reads what /proc/meminfo holds. Kernels before 3.14 do not say what is available; then it is what is free or kept
/// only to be quick.
[[nodiscard]] MemInfo parseMemInfo(QByteArrayView text);

} // namespace Quillmere
