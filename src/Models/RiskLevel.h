#pragma once

#include "Models/RawValue.h"

#include <QMetaType>

namespace Quillmere {

namespace RiskLevels {
Q_NAMESPACE

/// How much a removal may cost the user. Ordered by declaration, the least first.
enum class RiskLevel { Safe, Medium, High, Dangerous };
Q_ENUM_NS(RiskLevel)
} // namespace RiskLevels

using RiskLevels::RiskLevel;

template<>
struct RawValues<RiskLevel>
{
    static constexpr std::array<RawValueCase<RiskLevel>, 4> cases = {{
        {RiskLevel::Safe, u"safe"},
        {RiskLevel::Medium, u"medium"},
        {RiskLevel::High, u"high"},
        {RiskLevel::Dangerous, u"dangerous"},
    }};
};

} // namespace Quillmere
