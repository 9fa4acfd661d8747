#pragma once

#include <functional>

namespace Quillmere {

enum class WorkEnding { Done, Failed, Killed };

/// Does @p work in a process of its own and kills it as it is about to make its @p call'th system call, from 1. Done
/// and Failed as @p work says, where it came to its end before.
[[nodiscard]] WorkEnding doAndKillAt(int call, const std::function<bool()> &work);

} // namespace Quillmere
