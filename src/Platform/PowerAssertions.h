#pragma once

#include "Values/Result.h"

#include <QString>

namespace Quillmere {

/// Asks the machine not to sleep of its own accord. What is asked ends with the process at the latest.
/// GUI thread only.
class PowerAssertions
{
public:
    using ID = quint32;

    /// The level of an assertion that is on.
    static constexpr quint32 on = 255;

    virtual ~PowerAssertions() = default;

    /// @p name is what tools show who ask for the reason. Fails with NotSupported where nothing on this machine can be
    /// asked.
    [[nodiscard]] virtual Result<ID> create(const QString &type, quint32 level, const QString &name) = 0;
    /// An unknown @p assertion is ignored.
    virtual void release(ID assertion) = 0;
};

} // namespace Quillmere
