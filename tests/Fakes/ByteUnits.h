#pragma once

#include <QtGlobal>

namespace Quillmere {

inline constexpr qint64 megabyte = 1'000'000;
inline constexpr qint64 gigabyte = 1'000 * megabyte;

} // namespace Quillmere
