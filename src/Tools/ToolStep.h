#pragma once

#include "Tools/ToolEnd.h"

#include <QList>

namespace Quillmere {

/// One of several things that a command stands for on this machine, of which it may have none.
struct ToolStep
{
    enum class Kind { Done, Nothing, Failed };

    Kind kind = Kind::Nothing;
    QString text = {}; ///< A sentence. Empty only for Nothing.

    bool operator==(const ToolStep &) const = default;
};

/// Fails where a step has failed; the sentences of those that were done stand in the report all the same. Where a
/// machine has nothing of the kind it says @p nothing and is unavailable: success would be taken for work done.
[[nodiscard]] ToolEnd endOf(const QList<ToolStep> &steps, const QString &nothing);

} // namespace Quillmere
