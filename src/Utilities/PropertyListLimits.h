#pragma once

#include <QtGlobal>

namespace Quillmere::PropertyListLimits {

/// Bytes of the largest text that is read at all.
inline constexpr qsizetype mostBytes = 16 * 1024 * 1024;
/// Arrays and dictionaries inside each other. The library goes down by recursion, without a limit of its own.
inline constexpr int deepestNesting = 512;
/// Bytes that a binary list may grow to when everything that it refers to more than once is copied out, as the library
/// does. A list of a hundred bytes can stand for more than any memory holds.
inline constexpr quint64 mostExpandedBytes = 64 * 1024 * 1024;

} // namespace Quillmere::PropertyListLimits
