#pragma once

#include "Tools/ChildProgram.h"
#include "Tools/ToolStep.h"

namespace Quillmere {

/// What a program that was run for one step has come to: @p done, or @p failed with the reason behind it.
[[nodiscard]] ToolStep stepOf(const Result<ChildEnd> &end, const QString &done, const QString &failed);

} // namespace Quillmere
