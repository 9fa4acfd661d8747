#pragma once

#include "Platform/Clock.h"

namespace Quillmere {

/// The machine's own clock.
class SystemClock final : public Clock
{
public:
    [[nodiscard]] QDateTime now() const override;
    [[nodiscard]] std::chrono::milliseconds elapsed() const override;
};

} // namespace Quillmere
