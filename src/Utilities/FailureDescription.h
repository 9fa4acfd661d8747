#pragma once

#include "Values/Failure.h"

#include <QString>

namespace Quillmere {

/// Why it did not happen, in the active language: a few words without a full stop, to stand behind a colon.
/// A Failure of kind Other says its detail, which is not translated, where it has one. Any thread.
[[nodiscard]] QString localizedDescription(const Failure &failure);

} // namespace Quillmere
