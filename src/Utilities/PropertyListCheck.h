#pragma once

#include "Values/Result.h"

#include <QByteArray>

namespace Quillmere {

// What stands between a file from anywhere and the library that parses it, which takes a good deal on trust.
// Both fail with Malformed and never recurse beyond PropertyListLimits::deepestNesting.

/// Fails unless @p text is well-formed UTF-8 and XML, complete, of the known elements alone, each where it may stand
/// and with readable contents, and without definitions of its own.
[[nodiscard]] Result<void> checkXmlPropertyList(const QByteArray &text);

/// Fails unless every object that can be reached lies where it should, refers to none that holds it, and all of them
/// together, written out, stay within PropertyListLimits::mostExpandedBytes.
[[nodiscard]] Result<void> checkBinaryPropertyList(const QByteArray &bytes);

} // namespace Quillmere
