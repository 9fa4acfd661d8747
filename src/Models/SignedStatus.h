#pragma once

#include "Models/RawValue.h"

namespace Quillmere {

/// Whether a program is signed by its maker. Nothing finds that out: only Unknown occurs.
enum class SignedStatus { Signed, Unsigned, Unknown };

template<>
struct RawValues<SignedStatus>
{
    static constexpr std::array<RawValueCase<SignedStatus>, 3> cases = {{
        {SignedStatus::Signed, u"signed"},
        {SignedStatus::Unsigned, u"unsigned"},
        {SignedStatus::Unknown, u"unknown"},
    }};
};

} // namespace Quillmere
