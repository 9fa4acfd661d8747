#pragma once

#include "Values/Failure.h"

namespace Quillmere {

/// How an operation of the pretend machine fails.
[[nodiscard]] inline Failure pretendedFailure(Failure::Kind kind, const FilePath &path)
{
    return {kind, path, u"pretended"_qs};
}

} // namespace Quillmere
