#pragma once

#include <functional>
#include <string>

#include <sys/types.h>

namespace Quillmere {

/// Runs @p body in a process of its own and waits for it. Answers with what the body answered, or how it ended instead;
/// an empty answer is success.
[[nodiscard]] std::string answerOfChild(const std::function<std::string()> &body);

/// Starts a process that runs @p body and then ends.
[[nodiscard]] pid_t startChild(const std::function<void()> &body);
/// Ends a process of startChild() at once and takes it away.
void killChild(pid_t child);

/// Makes this process, a child of a test, an ordinary user's, for whom permissions count. True when it is one.
[[nodiscard]] bool becomeOrdinaryUser();
/// Gives this process, a child of a test, mounts of its own and puts an empty file system of @p bytes on @p folder.
/// False where the machine forbids that.
[[nodiscard]] bool mountSmallDisk(const std::string &folder, int bytes);

} // namespace Quillmere
