#pragma once

#include "Utilities/PropertyListNode.h"
#include "Values/Result.h"

#include <QByteArray>

namespace Quillmere {

/// Reads the form of property lists that is older than XML: `{ a = 1; b = (x, "y z"); c = <0fbd>; }`, with comments,
/// and with or without the outer braces. It knows texts, data, arrays and dictionaries alone, so that `1` and `YES` are
/// texts. Of a key that stands twice the last value holds; a key without a value stands for itself.
/// Fails with Malformed for anything else, and beyond the PropertyListLimits. @p text is UTF-8.
[[nodiscard]] Result<PropertyListNode> readOldStylePropertyList(const QByteArray &text);

} // namespace Quillmere
