#pragma once

#include "Tools/ToolEnd.h"

#include <QStringList>

namespace Quillmere {

/// Carries out the command `ditto FROM TO`: copies a tree with all that belongs to it to a place that must be free. It
/// is there whole or not at all.
[[nodiscard]] ToolEnd runDitto(const QStringList &arguments);

} // namespace Quillmere
