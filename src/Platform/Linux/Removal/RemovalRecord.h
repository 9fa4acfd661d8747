#pragma once

#include "Values/Failure.h"

#include <atomic>
#include <mutex>
#include <optional>

namespace Quillmere {

/// What a removal has done so far. Several threads write to it.
class RemovalRecord
{
public:
    void addRemoved(qint64 entries) { m_removed += entries; }
    /// Keeps the failure whose location comes first, so that the answer does not depend on the number of threads.
    void addFailure(int error, const FilePath &path);

    [[nodiscard]] qint64 removed() const { return m_removed; }
    [[nodiscard]] std::optional<Failure> failure() const;

private:
    std::atomic<qint64> m_removed = 0;
    mutable std::mutex m_mutex;
    std::optional<Failure> m_failure;
};

} // namespace Quillmere
